#pragma once

#include "document/DocumentReader.h"
#include "document/ReadableFile.h"

#include <chrono>
#include <functional>
#include <memory>

namespace quillory {

/// Reads a text file that is too large to wait for: its beginning at once, then more and more of
/// it, and in the end what readDocument() would have answered.
///
/// Until all is read the text is what the beginning's encoding makes of it. In the end the whole
/// file decides, so the text may turn out to be another from some place on.
class GradualRead
{
public:
    struct Options
    {
        ByteCount least{quickFileSize.value() + 1}; ///< smaller files are read as a whole
        ByteCount beginning{qsizetype(256) << 10};  ///< what is read at once
        ByteCount part{qsizetype(8) << 20};         ///< what is read and decoded in one piece
        std::chrono::milliseconds interval{150};    ///< between two reports
        ReadableFile::ReadCall read;                ///< none: the system's
    };

    /// What has come since the last report.
    struct Progress
    {
        TextSnapshot text; ///< goes at the end of the text reported before
        double share = 0;  ///< of the file's bytes that were read, from 0 to 1
    };

    struct Outcome
    {
        ReadResult result; ///< its text shares its leaves with the text that was reported
        /// How many units of the text that was reported are right; from there on the text is that
        /// of the result.
        TextOffset kept = 0;
    };

    /// Reads the beginning. Null when \a path is no regular file of the least size, or cannot be
    /// read: reading it as a whole tells why.
    static std::shared_ptr<GradualRead> begin(const QString& path, const Options& options);

    /// What the beginning says; a text that is not understood yet is undecoded.
    const ReadResult& beginning() const { return m_beginning; }
    /// How many lines the file has if the rest is like the beginning.
    qsizetype expectedLineCount() const;

    /// Reads the rest, once; may run on any thread. \a report is called on that thread. Ends early,
    /// with the answer no, once \a cancelled is set. A file that becomes shorter meanwhile is not
    /// taken. One that grows is taken as long as it was at the beginning; the next save asks about
    /// it.
    Outcome finish(const std::atomic_bool& cancelled,
                   const std::function<void(const Progress&)>& report);

private:
    Outcome readRest(const std::atomic_bool& cancelled,
                     const std::function<void(const Progress&)>& report);
    Outcome failure(int error) const;
    GradualRead(const QString& path, const Options& options);
    bool readBeginning();

    QString m_path;
    Options m_options;
    ReadableFile m_file;
    struct stat m_status = {}; ///< before the first byte was read
    QByteArray m_attribute;
    QByteArray m_first;   ///< the bytes read at once
    qsizetype m_used = 0; ///< how many of them the beginning's text holds
    ReadResult m_beginning;
};

} // namespace quillory
