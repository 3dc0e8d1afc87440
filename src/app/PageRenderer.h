#pragma once

#include "app/PageSource.h"

#include <QObject>
#include <memory>
#include <vector>

namespace quillory {

/// A part of a page, as PageSource::render() has it.
struct PageTile
{
    int page = 0;
    double scale = 1;
    QRect part;
    bool operator==(const PageTile&) const = default;
    friend size_t qHash(const PageTile& tile, size_t seed)
    {
        return qHashMulti(seed, tile.page, tile.scale, tile.part.x(), tile.part.y());
    }
};

/// Draws parts of pages on another thread: on one and the same, since the fonts that a text was
/// laid out with belong to the thread that did it.
class PageRenderer : public QObject
{
    Q_OBJECT

public:
    /// What pages are drawn for; those to be read come before those to be chosen from.
    enum Purpose
    {
        Reading,
        Overview
    };

    explicit PageRenderer(std::shared_ptr<PageSource> source, QObject* parent = nullptr);
    ~PageRenderer() override;

    /// Asks for \a tiles, in that order, in the place of those asked for the same purpose before
    /// that are not drawn yet.
    void request(Purpose purpose, std::vector<PageTile> tiles);

Q_SIGNALS:
    void rendered(const quillory::PageTile& tile, const QImage& image);

private:
    struct State;

    static void work(State& state);
    static bool renderWanted(State& state);

    std::shared_ptr<State> m_state; ///< shared with the thread that draws
};

} // namespace quillory
