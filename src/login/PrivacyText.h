#pragma once

#include <QString>

/// The line that dates a privacy policy by its version "yyyyMMdd", month and day as written
/// there: "Updated on March 04, 2024", or its Chinese counterpart. Empty when the version does
/// not have 8 characters, and in English when its month is not 01 to 12.
QString privacyUpdateText(const QString& version, bool chinese);
