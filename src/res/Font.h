#pragma once

/// Makes the interface font ":/Ostrana/res/font/NotoSansSC-Regular.otf" available to this process.
/// Its bytes are stored without compression, so that QResource::data() is the font itself and the
/// font database can work on it where it is. May be called any number of times, on the GUI thread.
void initFont();
