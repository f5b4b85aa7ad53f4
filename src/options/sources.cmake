# Files of src/options: the settings password's scramble (Qt Core); the settings dialog and
# the password prompt (widgets).
list(APPEND CORE_SOURCES
    src/options/password.cpp
)
list(APPEND UI_SOURCES
    src/options/frm_settings.h
    src/options/frm_settings.cpp
    src/options/settings_pages.cpp
    src/options/frm_pass.h
    src/options/frm_pass.cpp
)
