#pragma once

#include <QString>
#include <QStringList>

namespace commandline {

/// What is printed instead of a start when `arguments` (without the program's name) ask for it:
/// "--help", or "--version", which also shows what this client was built for. Otherwise empty;
/// other arguments are looked at where they matter, and unknown ones are ignored. Pure; needs no
/// display.
QString answer(const QStringList& arguments);

} // namespace commandline
