list(APPEND CORE_SOURCES
    src/tools/tooltable.cpp
)
list(APPEND CORE_SOURCES
    src/tools/tooltypes.cpp
)
list(APPEND UI_SOURCES
    src/tools/toolgrid.cpp
    src/tools/frmtooltype.cpp
    src/tools/frmtooldata.cpp
    src/tools/tooldatapanel.cpp
)
