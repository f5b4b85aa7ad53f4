# Files of src/guide: the in-run prompts (widgets).
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
)
