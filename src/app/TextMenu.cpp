#include "app/MenuTable.h"

namespace quillory {

std::span<const MenuItem> textMenu()
{
    return {};
}

} // namespace quillory
