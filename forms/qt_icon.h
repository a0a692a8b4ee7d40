// The program's own icon, drawn in code (window icon, About box).
#pragma once

#include <QPixmap>

namespace vantrel {

QPixmap VantrelIcon(int size);

} // namespace vantrel
