#pragma once

class QWidget;

namespace quillory {

void showAboutBox(QWidget* window);

} // namespace quillory
