# Warnings for the project's own targets; system and generated headers stay quiet.
add_library(veltaro_warnings INTERFACE)
target_compile_options(veltaro_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wformat=2
    $<$<BOOL:${VELTARO_WERROR}>:-Werror>)
target_compile_definitions(veltaro_warnings INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_DEPRECATED_WARNINGS)
