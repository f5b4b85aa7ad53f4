# Files of src/guide: the in-run prompts (widgets).
list(APPEND UI_SOURCES
    src/guide/frm_mill.h
    src/guide/frm_mill.cpp
    src/guide/billet.h
    src/guide/billet.cpp
)
