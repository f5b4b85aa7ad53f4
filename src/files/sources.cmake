# Files of src/files
list(APPEND UI_SOURCES
    src/files/cncedit.cpp
    src/files/cncedit_file.cpp
    src/files/editor_art.cpp
    src/files/editor_check.cpp
    src/files/frmedit.cpp
    src/files/file_dialog.h
    src/files/file_dialog.cpp
    src/files/file_open.h
    src/files/filechoice.cpp
    src/files/recent.cpp
    src/files/import.h
    src/files/import.cpp
    src/files/frmfind.cpp
)
