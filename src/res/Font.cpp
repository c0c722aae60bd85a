#include "res/Font.h"

#include <QtGlobal>

void initFont()
{
    Q_INIT_RESOURCE(font);
}
