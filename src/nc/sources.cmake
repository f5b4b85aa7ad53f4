list(APPEND CORE_SOURCES
    src/nc/commands.cpp
    src/nc/reader.cpp
    src/nc/textfile.cpp

    src/nc/stepcode.cpp
    src/nc/linestep.cpp
    src/nc/arcstep.cpp
    src/nc/writesteps.cpp
    src/nc/evaluate.cpp
    src/nc/analysed.cpp
    src/nc/ncxdump.cpp
)
