# Files of src/guide: the machining set-up wizard, the subsequent-part choice, the tool
# offset wizard and the in-run prompts (widgets).
list(APPEND UI_SOURCES
    src/guide/offset_art.cpp
    src/guide/offset_panel.h
    src/guide/offset_panel.cpp
    src/guide/offset_wizard.h
    src/guide/offset_wizard.cpp
    src/guide/frm_mill.h
    src/guide/frm_mill.cpp
    src/guide/billet.h
    src/guide/billet.cpp
    src/guide/method.cpp
    src/guide/method_panel.h
    src/guide/setmill.h
    src/guide/setmill.cpp
    src/guide/setmill_pages.h
    src/guide/setmill_pages.cpp
    src/guide/setmill_panel.h
    src/guide/setmill_panel.cpp
    src/guide/setmill_preview.cpp
)
