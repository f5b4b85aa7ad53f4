#include "link/link_world.h"

QByteArray StepFrame(int records)
{
    const int timer = 65536 - 1097;   // 768000 / 700 mm/min
    QByteArray f(1, char(records * 3 + 1));
    for (int i = 0; i < records; ++i)
        f.append(char(4 | 32)).append(char(timer & 0xFF)).append(char(timer >> 8));
    return f;
}

bool StreamFrames(int frames)
{
    for (int i = 0; i < frames; ++i) {
        if (gintBuffersOut >= 2 && !blnGetReplies(false))
            return false;
        SendFrame(StepFrame(16));
    }
    return blnGetReplies(true);
}
