// Built only by the test that proves the core library can't include widgets.
#include <QtWidgets/QWidget>
int probe() { return 0; }
