list(APPEND CORE_SOURCES
    src/nc/commands.cpp
)
