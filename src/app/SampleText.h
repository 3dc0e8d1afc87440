#pragma once

#include "document/Document.h"
#include "document/DocumentWindowHost.h"

#include <QFrame>
#include <memory>

namespace quillory {

class TextViewWidget;
class ViewAppearance;

/// A few lines of source code as document windows show them: in the theme and the font of the user
/// defaults, which it follows as they do. To be looked at only.
class SampleText : public QFrame, public DocumentWindowHost
{
    Q_OBJECT

public:
    /// \a environment outlives this.
    SampleText(const DocumentEnvironment& environment, QWidget* parent);
    ~SampleText() override;

    TextRange visibleTextRange() override;

private:
    void applySettings();

    Document m_document;
    TextViewWidget* m_view;
    std::unique_ptr<ViewAppearance> m_appearance;
};

} // namespace quillory
