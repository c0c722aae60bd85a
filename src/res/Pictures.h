#pragma once

/// Makes the pictures (":/Ostrana/res/..."), the style sheets (":/Ostrana/res/style/...") and the
/// Chinese translations (":/Ostrana/zh_CN.qm", Qt's own ":/Ostrana/qtbase_zh_CN.qm") available to
/// this process. They sit in a static library, whose own registration the linker would drop. May
/// be called any number of times, on the GUI thread, before or after the application object exists.
void initPictures();
