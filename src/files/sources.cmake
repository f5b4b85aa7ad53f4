# Files of src/files
list(APPEND UI_SOURCES
    src/files/cncedit.cpp
    src/files/cncedit_file.cpp
    src/files/editor_art.cpp
    src/files/editor_check.cpp
    src/files/frmedit.cpp
    src/files/frmfind.cpp
)
