#include "res/Pictures.h"

#include <QtGlobal>

void initPictures()
{
    Q_INIT_RESOURCE(pictures);
}
