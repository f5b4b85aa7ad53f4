list(APPEND CORE_SOURCES
    src/core/vb.cpp
    src/core/hooks.cpp
    src/core/logger.cpp
    src/core/msgbox.cpp
    src/core/store.cpp
    src/core/state.cpp
    src/core/filenum.cpp
)
