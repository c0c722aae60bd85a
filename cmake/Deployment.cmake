# What differs from one deployment of the service to the next; docs/howto.md says how to set it.
# The maker's name also stands in names that are the same in every deployment: of a logo that the
# orchestrator is asked for, of commands to the datapath, and of the single-instance semaphore.
set(VELTARO_LOOKUP_PRIMARY "https://lookup.veltaro.example/api/mobile/v1/orchinfo"
    CACHE STRING "Primary lookup server")
set(VELTARO_LOOKUP_BACKUP "https://lookup-backup.veltaro.example/api/mobile/v1/orchinfo"
    CACHE STRING "Backup lookup server")
set(VELTARO_USER_AGREEMENT_EN "https://docs.veltaro.example/en/user-agreement.html"
    CACHE STRING "User agreement, English")
set(VELTARO_USER_AGREEMENT_ZH "https://docs.veltaro.example/zh/user-agreement.html"
    CACHE STRING "User agreement, Chinese")
set(VELTARO_PRIVACY_POLICY_EN "https://docs.veltaro.example/en/privacy-policy.html"
    CACHE STRING "Privacy policy, English")
set(VELTARO_PRIVACY_POLICY_ZH "https://docs.veltaro.example/zh/privacy-policy.html"
    CACHE STRING "Privacy policy, Chinese")
set(VELTARO_MAKER_NAME "Orvek Networks" CACHE STRING "Maker's name on the about page")
set(VELTARO_PING_TARGETS "ping1.veltaro.example;ping2.veltaro.example"
    CACHE STRING "Hosts that the network diagnosis pings")

# A client that is shipped with the examples reaches nobody.
option(VELTARO_EXAMPLE_HOSTS "Ship the example hosts all the same" OFF)
if(NOT VELTARO_DEVELOPMENT AND NOT VELTARO_EXAMPLE_HOSTS)
    foreach(name LOOKUP_PRIMARY LOOKUP_BACKUP USER_AGREEMENT_EN USER_AGREEMENT_ZH PRIVACY_POLICY_EN
            PRIVACY_POLICY_ZH PING_TARGETS)
        if(VELTARO_${name} MATCHES "\\.example([/:;]|$)")
            string(REPLACE ";" " and " value "${VELTARO_${name}}")
            list(APPEND examples "  -DVELTARO_${name}=...   now ${value}")
        endif()
    endforeach()
    if(examples)
        list(JOIN examples "\n" examples)
        message(FATAL_ERROR "These values are still examples; give those of the deployment:\n"
            "${examples}\nor say that this is meant: -DVELTARO_EXAMPLE_HOSTS=ON")
    endif()
endif()
