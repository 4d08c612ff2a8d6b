// Access to the pictures compiled into the programs.
#include "resources/Resources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE declares a global function, so it has to stand outside the namespace.
static void InitCompiledResources() {
    Q_INIT_RESOURCE(resources);
}

namespace ladderwise {

void InitResources() {
    InitCompiledResources();
}

QString SchematicPath(ElementType type) {
    return QStringLiteral(":/schematics/") + QString::fromStdString(PictureName(type)) +
           QStringLiteral(".bmp");
}

}  // namespace ladderwise
