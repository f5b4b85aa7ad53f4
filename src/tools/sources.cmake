list(APPEND CORE_SOURCES
    src/tools/tooltable.cpp
)
