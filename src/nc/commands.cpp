#include "nc/commands.h"

vb::Table<CommandRecord> gtypCommands;
int32_t glngCommandCount = 0;
vb::Table<int16_t> gintUsedTools;
int16_t gintUsedToolCount = 0;
