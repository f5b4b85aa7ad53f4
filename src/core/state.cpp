#include "core/state.h"

#include "core/store.h"
#include "core/vb.h"

bool gblnOnline = false;
bool gblnWoodworker = false;
float gsngRapidSpeed = 0.0f;
QString gstrPassword;
QString gstrComport;
bool gblnShowTime = false;
bool gblnKeepFiles = false;
bool gblnRapidUseDot = false;
int16_t gintBacklashX = 0;
int16_t gintBacklashY = 0;
int16_t gintBacklashZ = 0;

int16_t gintTwipsPerPixel = 15;
int16_t gintMode = 0;
bool gblnCancel = false;
bool gblnKeyLoop = false;
bool gblnSetupWizard = false;
int16_t gintSetStep = 0;
int16_t gintOffStep = 0;
bool gblnNewPart = false;
bool gblnRepeatPart = false;
bool gblnToolInserted = false;
bool gblnToolInMachine = false;
int16_t gintCurrentTool = 0;
int16_t gintNextTool = 0;
float gsngOriginToolOffset = 0.0f;
float gsngCurrentToolOffset = 0.0f;
int16_t gintOffsetTool = 0;
int32_t glngPosX = 0;
int32_t glngPosY = 0;
int32_t glngPosZ = 0;
bool gblnDoorOpen = false;
bool gblnSpindleOn = false;
bool gblnSpindleStartReq = false;
bool gblnSpindleStopReq = false;
int16_t gintBuffersOut = 0;
bool gblnDoorStopped = false;
int16_t gintLastDirX = -1;
int16_t gintLastDirY = -1;
int16_t gintLastDirZ = -1;
int16_t gintPlayX = 0;
int16_t gintPlayY = 0;
int16_t gintPlayZ = 0;

QString gstrMillFile;
QString gstrNCFile;
QString gstrHeader;
int16_t gintReadResult = 0;
float gsngBilletLength = 0.0f;
float gsngBilletWidth = 0.0f;
float gsngBilletDepth = 0.0f;
QString gstrAnalysedReason;
bool gblnAnalysedValid = false;
bool gblnAnalysedToTemp = false;
int16_t gintMRUCount = 0;
int16_t gintWorkFile = 0;
QString gstrWorkFile;

void ReadStartSettings()
{
    gblnOnline = blnYes(strRegistryValueGet(QStringLiteral("Online"), QStringLiteral("No")));
    gblnWoodworker = blnYes(strRegistryValueGet(QStringLiteral("Woodworker"), QStringLiteral("No")));
    gsngRapidSpeed = static_cast<float>(vb::Val(strRegistryValueGet(QStringLiteral("RapidSpeed"), QStringLiteral("500"))));
    gstrPassword = strRegistryValueGet(QStringLiteral("Password"), QStringLiteral("None"));
    gblnKeepFiles = blnYes(strRegistryValueGet(QStringLiteral("KeepFiles"), QStringLiteral("Yes")));
    gblnRapidUseDot = blnYes(strRegistryValueGet(QStringLiteral("RapidUseDot"), QStringLiteral("Yes")));
    gblnShowTime = blnYes(strRegistryValueGet(QStringLiteral("ShowTime"), QStringLiteral("Yes")));
    gintBacklashX = vb::CInt(vb::Val(strRegistryValueGet(QStringLiteral("BacklashX"), QStringLiteral("0"))));
    gintBacklashY = vb::CInt(vb::Val(strRegistryValueGet(QStringLiteral("BacklashY"), QStringLiteral("0"))));
    gintBacklashZ = vb::CInt(vb::Val(strRegistryValueGet(QStringLiteral("BacklashZ"), QStringLiteral("0"))));
}

void ResetSharedState()
{
    gblnOnline = gblnWoodworker = gblnShowTime = gblnKeepFiles = gblnRapidUseDot = false;
    gsngRapidSpeed = 0.0f;
    gstrPassword.clear();
    gstrComport.clear();
    gintBacklashX = gintBacklashY = gintBacklashZ = 0;
    gintTwipsPerPixel = 15;
    gintMode = 0;
    gblnCancel = gblnKeyLoop = gblnSetupWizard = gblnNewPart = gblnRepeatPart = false;
    gintSetStep = gintOffStep = 0;
    gblnToolInserted = gblnToolInMachine = false;
    gintCurrentTool = gintNextTool = 0;
    gsngOriginToolOffset = gsngCurrentToolOffset = 0.0f;
    gintOffsetTool = 0;
    glngPosX = glngPosY = glngPosZ = 0;
    gblnDoorOpen = gblnSpindleOn = gblnSpindleStartReq = gblnSpindleStopReq = false;
    gintBuffersOut = 0;
    gblnDoorStopped = false;
    gintLastDirX = gintLastDirY = gintLastDirZ = -1;
    gintPlayX = gintPlayY = gintPlayZ = 0;
    gstrMillFile.clear();
    gstrNCFile.clear();
    gstrHeader.clear();
    gintReadResult = 0;
    gsngBilletLength = gsngBilletWidth = gsngBilletDepth = 0.0f;
    gstrAnalysedReason.clear();
    gblnAnalysedValid = gblnAnalysedToTemp = false;
    gintMRUCount = 0;
    gintWorkFile = 0;
    gstrWorkFile.clear();
}
