// The link's and the stream's screen on the main window: the spindle pictures, their tool
// tips and menu entries, the warning beside them (drawn from gSpindleControls), and the
// machining panel (the code with the current line marked, the progress bar), the in-run
// prompt and the screens a run goes back to (streamHooks()).
#pragma once

class FrmMain;

// Installs the hooks. Call once at start, after InstallLinkUi; frmMain is reached when a
// hook first runs.
void InstallMachiningUi();
// Puts gSpindleControls on frmMain's spindle controls and menu entries.
void DrawSpindleControls(FrmMain *f);
