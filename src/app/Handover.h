#pragma once

#include "app/StartOptions.h"

#include <QByteArray>

namespace quillory {

/// What a start of the program hands over to the one that runs already.
struct Handover
{
    std::vector<OpenTarget> targets; ///< with absolute paths; none asks for a new document
    bool waits = false;              ///< for the windows of the targets to be closed
    QByteArray activationToken;      ///< lets a window come to the front in a Wayland session

    bool operator==(const Handover&) const = default;
};

/// Of \a options, with relative paths made absolute and the token of the environment.
Handover handoverOf(const StartOptions& options);

/// A request's length in bytes, as four bytes, the highest first, and the request.
QByteArray encode(const Handover& handover);

/// The request that \a bytes begin with; nothing while some of it is missing. One that makes no
/// sense, or says that it has more than 16 MiB, sets \a broken.
std::optional<Handover> decode(const QByteArray& bytes, bool& broken);

/// What is answered, a byte each.
enum class HandoverAnswer : char
{
    Taken = 'T',    ///< always the first, at once
    Closed = 'C',   ///< to who waits: all windows were closed
    NotOpened = 'N' ///< to who waits: as Closed, but something could not be opened
};

} // namespace quillory
