// Stand-ins for procedures that other parts of the program provide (see pending.h).
// Each is replaced, and deleted here, when its part is built.
#include "core/pending.h"

#include "core/frm_main.h"
#include "core/state.h"

