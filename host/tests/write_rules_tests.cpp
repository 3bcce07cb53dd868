// Which writes go to a real monitor, and which would do harm, or nothing.
#include "host/windows_monitors/write_rules.h"

#include <gtest/gtest.h>

#include "monitor/vcp_codes.h"

static MONITORKNOWLEDGE OfAnotherMake()
{
    MONITORKNOWLEDGE known = NoKnowledge();
    known.listed = CapabilityCodes("(vcp(10 12 14(05 0B) 16 60(01 0F) D6(01 04) E0 F2))");
    LearnRead(&known, VCP_BRIGHTNESS, 40, 100, 0);
    LearnRead(&known, VCP_CONTRAST, 50, 0, 0); // a maximum of 0 says nothing
    return known;
}

TEST(WriteRules, OnlyWhatCanBeMeantIsSent)
{
    MONITORKNOWLEDGE ours = OfAnotherMake(), mute = NoKnowledge();
    ours.takesMakersCodes = true;
    const MONITORKNOWLEDGE other = OfAnotherMake();
    const struct {
        const MONITORKNOWLEDGE *known;
        BYTE code;
        WORD value;
        WRITEVERDICT verdict;
    } cases[] = {
        {&other, VCP_BRIGHTNESS, 100, WRITE_SEND},
        {&other, VCP_BRIGHTNESS, 101, REFUSED_ABOVE_MAXIMUM},
        {&other, VCP_CONTRAST, 200, WRITE_SEND},
        {&mute, VCP_BRIGHTNESS, 200, WRITE_SEND},
        {&other, VCP_BRIGHTNESS, 0, WRITE_SEND},
        {&mute, VCP_BRIGHTNESS, 0, REFUSED_UNREAD_ZERO},
        {&other, VCP_RED_GAIN, 0, REFUSED_UNREAD_ZERO},
        {&ours, VCP_ECO_MODE, 0, REFUSED_UNREAD_ZERO},
        {&ours, VCP_BUTTON_LOCK, 0, WRITE_SEND},
        {&other, VCP_TV_CHANNEL, 0xFFFF, REFUSED_FAILED_READ},
        {&ours, VCP_BUTTON_LOCK, 0xFFFF, REFUSED_FAILED_READ},
        {&other, VCP_ECO_MODE, 1, REFUSED_MAKERS_CODE},
        {&other, 0xFF, 1, REFUSED_MAKERS_CODE},
        {&other, VCP_MAKERS_OWN - 1, 1, WRITE_SEND},
        {&ours, VCP_ECO_MODE, 1, WRITE_SEND},
        {&ours, VCP_BUTTON_PRESSED, 255, WRITE_SEND},
        {&other, VCP_INPUT_SOURCE, 0x0F, WRITE_SEND},
        {&other, VCP_INPUT_SOURCE, 0x11, REFUSED_UNLISTED_VALUE},
        {&other, VCP_POWER_MODE, 5, REFUSED_UNLISTED_VALUE},
        {&other, VCP_COLOR_PRESET, 6, REFUSED_UNLISTED_VALUE},
        {&mute, VCP_COLOR_PRESET, 6, WRITE_SEND},
        {&mute, VCP_INPUT_SOURCE, 0x11, WRITE_SEND},
    };
    for (const auto &one : cases) {
        const WRITEVERDICT verdict = JudgeWrite(*one.known, one.code, one.value, 0);
        EXPECT_EQ(verdict, one.verdict) << std::hex << int{one.code} << " " << one.value;
        EXPECT_EQ(*RefusalText(verdict) != '\0', IsRefused(verdict));
    }
}

TEST(WriteRules, TheSameValueAgainIsNoWrite)
{
    constexpr DWORD late = 0xFFFFFFF0; // the clock turns over meanwhile
    MONITORKNOWLEDGE known = OfAnotherMake();
    known.takesMakersCodes = true;
    const auto judge = [&](WORD value, DWORD passed) {
        return JudgeWrite(known, VCP_BRIGHTNESS, value, late + passed);
    };
    LearnWrite(&known, VCP_BRIGHTNESS, 70, true, late);
    EXPECT_EQ(judge(70, KNOWN_TIME - 1), WRITE_SKIP);
    EXPECT_EQ(judge(71, 0), WRITE_SEND);
    EXPECT_EQ(judge(70, KNOWN_TIME), WRITE_LOOK) << "somebody may have used the monitor's own menu";
    LearnRead(&known, VCP_BRIGHTNESS, 70, 100, late + KNOWN_TIME);
    EXPECT_EQ(judge(70, KNOWN_TIME + 1), WRITE_SKIP);
    LearnWrite(&known, VCP_BRIGHTNESS, 70, false, late);
    EXPECT_EQ(judge(70, 0), WRITE_SEND) << "one that failed";
    for (const BYTE resets : {VCP_RESTORE_DEFAULTS, VCP_RESTORE_LUMINANCE, VCP_RESTORE_COLOR, VCP_COLOR_PRESET,
                              VCP_INPUT_SOURCE, VCP_POWER_MODE, VCP_ECO_MODE}) {
        LearnWrite(&known, VCP_BRIGHTNESS, 70, true, late);
        LearnWrite(&known, resets, 1, true, late);
        EXPECT_EQ(judge(70, 0), WRITE_SEND) << std::hex << int{resets};
    }
    LearnWrite(&known, VCP_BRIGHTNESS, 70, true, late);
    LearnWrite(&known, VCP_CONTRAST, 70, true, late);
    EXPECT_EQ(judge(70, 0), WRITE_SKIP);
    ForgetValues(&known);
    EXPECT_EQ(judge(70, 0), WRITE_SEND);
    EXPECT_EQ(judge(101, 0), REFUSED_ABOVE_MAXIMUM) << "that does not change while a monitor sleeps";
    // What may have to be done twice.
    for (const BYTE code : {VCP_INPUT_SOURCE, VCP_POWER_MODE, VCP_BUTTON_LOCK, VCP_BUTTON_PRESSED}) {
        LearnWrite(&known, code, 1, true, late);
        EXPECT_EQ(JudgeWrite(known, code, 1, late), WRITE_SEND) << std::hex << int{code};
    }
}
