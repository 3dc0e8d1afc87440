#pragma once

namespace quillory {

struct DocumentEnvironment;
struct StartOptions;

/// Prints the file that \a options name to the PDF file that they name, without a window, and tells
/// standard error what went wrong. The answer is the exit status.
int printToFile(const DocumentEnvironment& environment, const StartOptions& options);

} // namespace quillory
