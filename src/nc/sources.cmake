list(APPEND CORE_SOURCES
    src/nc/commands.cpp
    src/nc/reader.cpp
    src/nc/textfile.cpp
)
