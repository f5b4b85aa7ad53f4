# Files of src/files
list(APPEND UI_SOURCES
    src/files/frmedit.cpp
)
