# Sanitizers and coverage, chosen by the presets.
if(VELTARO_SANITIZE)
    add_compile_options(-fsanitize=${VELTARO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELTARO_SANITIZE})
    if(VELTARO_SANITIZE MATCHES "thread")
        # Crypto++ has fences in its headers, which this sanitizer does not follow.
        add_compile_options(-Wno-tsan)
    endif()
endif()
if(VELTARO_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
