// Draws a simulated monitor. The screen shows a test scene through the monitor's brightness, contrast and colour, so
// that a change of a setting is seen as a change of the picture.
#include "host/simulated/monitor_picture.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/base/text.h"
#include "monitor/vcp_codes.h"

constexpr int BODY_EDGE = 6;
constexpr int SCREEN_WIDTH = MONITOR_PICTURE_WIDTH - 2 * BODY_EDGE;
constexpr int SCREEN_HEIGHT = 170;
constexpr int PANEL_TOP = BODY_EDGE + SCREEN_HEIGHT;
constexpr int BUTTON_WIDTH = 47, BUTTON_HEIGHT = 20, BUTTON_GAP = 4;
constexpr int NAME_TOP = PANEL_TOP + 1, NAME_HEIGHT = 17; // the lamp and the marks stand beside the name
constexpr int BUTTON_TOP = NAME_TOP + NAME_HEIGHT;

constexpr COLORREF COLOR_BODY = RGB(0x2B, 0x2D, 0x31), COLOR_BODY_LINE = RGB(0x4A, 0x4D, 0x53);
constexpr COLORREF COLOR_BUTTON = RGB(0x50, 0x54, 0x5B), COLOR_BUTTON_HELD = RGB(0x2E, 0x6D, 0xA8);
constexpr COLORREF COLOR_BUTTON_LOCKED = RGB(0x36, 0x38, 0x3C);
constexpr COLORREF COLOR_LABEL = RGB(0xF2, 0xF2, 0xF2), COLOR_LABEL_LOCKED = RGB(0x72, 0x75, 0x7A);
constexpr COLORREF COLOR_LED_ON = RGB(0x4C, 0xD9, 0x64), COLOR_LED_OFF = RGB(0xE0, 0x8A, 0x1E);
constexpr COLORREF COLOR_REPORTED = RGB(0x5A, 0xC8, 0xFA);
constexpr COLORREF COLOR_ECO = RGB(0x2E, 0x8B, 0x3D), COLOR_LINK = RGB(0x2E, 0x6D, 0xA8),
                   COLOR_OSD = RGB(0x18, 0x1A, 0x1E);

struct COLOUR {
    double red, green, blue; // 0 to 1
};

// ---- Names ----------------------------------------------------------------------------------------------------------

static std::wstring InputText(const MONITORSTATE &state)
{
    static const wchar_t *const names[] = {
        L"入力なし",    L"アナログ",     L"アナログ2",      L"デジタル",        L"デジタル2",
        L"ビデオ",      L"ビデオ2",      L"Sビデオ",        L"Sビデオ2",        L"テレビ",
        L"テレビ2",     L"テレビ3",      L"コンポーネント", L"コンポーネント2", L"コンポーネント3",
        L"DisplayPort", L"DisplayPort2", L"HDMI",           L"HDMI2",
    };
    std::wstring text = state.input < std::size(names) ? names[state.input] : L"入力 " + std::to_wstring(state.input);
    if (state.hasChannel && state.input >= INPUT_TV && state.input <= INPUT_TV_LAST)
        text += L"  " + std::to_wstring(state.channel) + L" ch";
    return text;
}

// The white that a preset gives, relative to the panel's own.
static const struct {
    const wchar_t *name;
    COLOUR white;
} s_presets[] = {
    {L"標準", {1, 1, 1}},         {L"sRGB", {1, 1, 1}},         {L"7200K", {0.95, 0.97, 1}},
    {L"4000K", {1, 0.82, 0.64}},  {L"5000K", {1, 0.90, 0.81}},  {L"6500K", {1, 0.98, 0.96}},
    {L"7500K", {0.93, 0.95, 1}},  {L"8200K", {0.88, 0.93, 1}},  {L"9300K", {0.82, 0.89, 1}},
    {L"10000K", {0.80, 0.87, 1}}, {L"11500K", {0.76, 0.85, 1}}, {L"ユーザー", {1, 1, 1}},
    {L"ユーザー2", {1, 1, 1}},    {L"ユーザー3", {1, 1, 1}},
};

static std::wstring LevelText(const wchar_t *name, MONITORSTATE::LEVEL level)
{
    return std::wstring(name) + L" " + (level.maximum ? std::to_wstring(level.value) : L"-");
}

static std::wstring ColourText(const MONITORSTATE &state)
{
    std::wstring text = state.preset < std::size(s_presets) ? s_presets[state.preset].name
                                                            : L"プリセット " + std::to_wstring(state.preset);
    if (state.isUserPreset)
        text += L"  " + LevelText(L"R", state.gains[0]) + L"  " + LevelText(L"G", state.gains[1]) + L"  " +
                LevelText(L"B", state.gains[2]);
    return text;
}

// ---- The scene ------------------------------------------------------------------------------------------------------

static double Mix(double a, double b, double part)
{
    return a + (b - a) * std::clamp(part, 0.0, 1.0);
}

static COLOUR MixColours(COLOUR a, COLOUR b, double part)
{
    return {Mix(a.red, b.red, part), Mix(a.green, b.green, part), Mix(a.blue, b.blue, part)};
}

// An evening by the sea: sky, sun, two ranges of hills, water with the sun's track.
static COLOUR LandscapeAt(double x, double y)
{
    const COLOUR zenith = {0.16, 0.30, 0.62}, horizon = {0.99, 0.72, 0.45}, sunlight = {1.0, 0.96, 0.80};
    const double shore = 0.56;
    if (y > shore) {
        const double depth = (y - shore) / (1 - shore);
        const double track =
            std::exp(-std::pow((x - 0.66) / (0.03 + 0.10 * depth), 2)) * (0.6 + 0.4 * std::sin(depth * 40));
        return MixColours(MixColours({0.85, 0.60, 0.42}, {0.07, 0.20, 0.34}, depth * 1.3), sunlight, track * 0.8);
    }
    const double front = shore - 0.08 - 0.07 * std::sin(x * 7.0 + 0.6) - 0.03 * std::sin(x * 23);
    const double back = shore - 0.15 - 0.06 * std::sin(x * 4.3 + 2.4);
    if (y > front)
        return MixColours({0.10, 0.24, 0.14}, {0.22, 0.42, 0.20}, (y - front) * 6);
    if (y > back)
        return MixColours({0.33, 0.36, 0.50}, {0.55, 0.45, 0.48}, (y - back) * 6);
    const double distance = std::hypot((x - 0.66) * 1.35, y - 0.27);
    return MixColours(MixColours(zenith, horizon, y * 2.1), sunlight,
                      distance < 0.075 ? 1 : 0.5 * std::exp(-distance * 9));
}

static COLOUR PatchAt(int column, int row)
{
    static const COLOUR patches[2][4] = {
        {{0.90, 0.10, 0.10}, {0.10, 0.75, 0.15}, {0.12, 0.20, 0.90}, {1, 1, 1}},
        {{0.10, 0.80, 0.85}, {0.85, 0.15, 0.75}, {0.97, 0.88, 0.12}, {0.93, 0.74, 0.62}},
    };
    return patches[row][column];
}

// Left the landscape, right eight patches, below a grey ramp in sixteen steps.
static COLOUR SceneAt(int x, int y)
{
    constexpr int ramp = 22, patchesLeft = SCREEN_WIDTH - 112;
    if (y >= SCREEN_HEIGHT - ramp) {
        const double grey = std::floor(x * 16.0 / SCREEN_WIDTH) / 15;
        return {grey, grey, grey};
    }
    if (x >= patchesLeft)
        return PatchAt(std::min(3, (x - patchesLeft) / 28), y / ((SCREEN_HEIGHT - ramp) / 2));
    return LandscapeAt(double(x) / patchesLeft, double(y) / (SCREEN_HEIGHT - ramp));
}

static const std::vector<COLOUR> &Scene()
{
    static std::vector<COLOUR> scene;
    if (scene.empty())
        for (int y = 0; y < SCREEN_HEIGHT; y++)
            for (int x = 0; x < SCREEN_WIDTH; x++)
                scene.push_back(SceneAt(x, y));
    return scene;
}

static double Part(MONITORSTATE::LEVEL level, double withoutControl)
{
    return level.maximum ? double(level.value) / level.maximum : withoutControl;
}

static COLOUR WhiteOf(const MONITORSTATE &state)
{
    if (state.isUserPreset)
        return {Part(state.gains[0], 1), Part(state.gains[1], 1), Part(state.gains[2], 1)};
    return state.preset < std::size(s_presets) ? s_presets[state.preset].white : COLOUR{1, 1, 1};
}

// What becomes of each 8-bit level of one colour: contrast about the middle grey, then the white, then the back light,
// which never goes quite dark.
static void FillCurve(const MONITORSTATE &state, double white, BYTE curve[256])
{
    const double contrast = 0.4 + 1.2 * Part(state.contrast, 0.5);
    const double light = 0.25 + 0.75 * Part(state.brightness, 1);
    for (int i = 0; i < 256; i++) {
        const double level = std::clamp((i / 255.0 - 0.5) * contrast + 0.5, 0.0, 1.0);
        curve[i] = static_cast<BYTE>(std::lround(255 * level * white * light));
    }
}

static BYTE Curved(const BYTE curve[256], double level)
{
    return curve[std::lround(level * 255)];
}

static void DrawScene(HDC hDC, const MONITORSTATE &state)
{
    BYTE red[256], green[256], blue[256];
    const COLOUR white = WhiteOf(state);
    FillCurve(state, white.red, red);
    FillCurve(state, white.green, green);
    FillCurve(state, white.blue, blue);

    std::vector<DWORD> pixels;
    pixels.reserve(Scene().size());
    for (const COLOUR &colour : Scene())
        pixels.push_back(static_cast<DWORD>(Curved(red, colour.red) << 16 | Curved(green, colour.green) << 8 |
                                            Curved(blue, colour.blue)));
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, SCREEN_WIDTH, -SCREEN_HEIGHT, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    SetDIBitsToDevice(hDC, BODY_EDGE, BODY_EDGE, SCREEN_WIDTH, SCREEN_HEIGHT, 0, 0, 0, SCREEN_HEIGHT, pixels.data(),
                      &info, DIB_RGB_COLORS);
}

// ---- Drawing --------------------------------------------------------------------------------------------------------

static void FillBox(HDC hDC, const RECT &box, COLORREF colour)
{
    SetBkColor(hDC, colour);
    ExtTextOutW(hDC, 0, 0, ETO_OPAQUE, &box, nullptr, 0, nullptr);
}

static void FillShape(HDC hDC, const RECT &box, int round, COLORREF fill, COLORREF line)
{
    const HBRUSH brush = CreateSolidBrush(fill);
    const HPEN pen = CreatePen(PS_SOLID, 1, line);
    const HGDIOBJ oldBrush = SelectObject(hDC, brush), oldPen = SelectObject(hDC, pen);
    RoundRect(hDC, box.left, box.top, box.right, box.bottom, round, round);
    SelectObject(hDC, oldBrush);
    SelectObject(hDC, oldPen);
    DeleteObject(brush);
    DeleteObject(pen);
}

static void DrawLine(HDC hDC, RECT box, const std::wstring &text, COLORREF colour, UINT format)
{
    SetTextColor(hDC, colour);
    SetBkMode(hDC, TRANSPARENT);
    DrawTextW(hDC, text.c_str(), static_cast<int>(text.size()), &box,
              format | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

static int TextWidth(HDC hDC, const std::wstring &text)
{
    SIZE size = {};
    GetTextExtentPoint32W(hDC, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

// A word in a coloured box whose right edge is at `right`; returns the box's left edge.
static int DrawMark(HDC hDC, int right, const wchar_t *text, COLORREF colour)
{
    const RECT box = {right - TextWidth(hDC, text) - 12, BODY_EDGE + 6, right, BODY_EDGE + 6 + 20};
    FillShape(hDC, box, 6, colour, colour);
    DrawLine(hDC, box, text, RGB(0xFF, 0xFF, 0xFF), DT_CENTER);
    return box.left;
}

static void DrawOnScreenTexts(HDC hDC, const MONITORSTATE &state)
{
    const std::wstring input = InputText(state);
    const RECT inputBox = {BODY_EDGE + 6, BODY_EDGE + 6, BODY_EDGE + 6 + TextWidth(hDC, input) + 18,
                           BODY_EDGE + 6 + 20};
    FillShape(hDC, inputBox, 6, COLOR_OSD, COLOR_BODY_LINE);
    DrawLine(hDC, inputBox, input, RGB(0xFF, 0xFF, 0xFF), DT_CENTER);

    int right = BODY_EDGE + SCREEN_WIDTH - 6;
    if (state.eco)
        right = DrawMark(hDC, right, L"ECO", COLOR_ECO) - 4;
    if (state.directLink)
        DrawMark(hDC, right, L"DirectLink", COLOR_LINK);

    const std::wstring levels =
        LevelText(L"明るさ", state.brightness) + L"   " + LevelText(L"コントラスト", state.contrast);
    const std::wstring colour = L"色  " + ColourText(state);
    const int width = std::max(TextWidth(hDC, levels), TextWidth(hDC, colour));
    const int bottom = BODY_EDGE + SCREEN_HEIGHT - 28;
    const RECT valueBox = {BODY_EDGE + 6, bottom - 40, BODY_EDGE + 6 + width + 18, bottom};
    FillShape(hDC, valueBox, 6, COLOR_OSD, COLOR_BODY_LINE);
    const RECT upper = {valueBox.left + 9, valueBox.top + 3, valueBox.right, valueBox.top + 20};
    const RECT lower = {valueBox.left + 9, valueBox.top + 20, valueBox.right, valueBox.bottom - 3};
    DrawLine(hDC, upper, levels, RGB(0xFF, 0xFF, 0xFF), DT_LEFT);
    DrawLine(hDC, lower, colour, RGB(0xFF, 0xFF, 0xFF), DT_LEFT);
}

static void DrawScreen(HDC hDC, const MONITORSTATE &state)
{
    if (state.powered) {
        DrawScene(hDC, state);
        DrawOnScreenTexts(hDC, state);
        return;
    }
    const RECT box = {BODY_EDGE, BODY_EDGE, BODY_EDGE + SCREEN_WIDTH, BODY_EDGE + SCREEN_HEIGHT};
    FillBox(hDC, box, RGB(0x08, 0x08, 0x0A));
    DrawLine(hDC, box, L"電源オフ", RGB(0x60, 0x60, 0x66), DT_CENTER);
}

// Buttons stand at the right, in order, without gaps for those that the monitor has not.
RECT MonitorButtonPlace(const MONITORSTATE &state, int button)
{
    int behind = 0;
    for (int i = button; i < MONITOR_BUTTON_COUNT; i++)
        behind += !state.labels[static_cast<size_t>(i)].empty();
    const int right = MONITOR_PICTURE_WIDTH - BODY_EDGE - 6 - behind * (BUTTON_WIDTH + BUTTON_GAP);
    return {right - BUTTON_WIDTH, BUTTON_TOP, right, BUTTON_TOP + BUTTON_HEIGHT};
}

static void DrawDot(HDC hDC, int x, int y, COLORREF colour)
{
    const RECT box = {x - 3, y - 3, x + 4, y + 4};
    FillShape(hDC, box, 7, colour, colour);
}

static void DrawButton(HDC hDC, const MONITORSTATE &state, int button, bool isHeld)
{
    const bool isLocked = (state.lockMask & ButtonBit(button)) != 0;
    const bool isPower = button == MONITOR_BUTTON_COUNT;
    const RECT box = MonitorButtonPlace(state, button);
    FillShape(hDC, box, 6, isHeld ? COLOR_BUTTON_HELD : isLocked ? COLOR_BUTTON_LOCKED : COLOR_BUTTON, COLOR_BODY_LINE);
    DrawLine(hDC, box, Widen(state.labels[static_cast<size_t>(button - 1)]),
             isLocked ? COLOR_LABEL_LOCKED : COLOR_LABEL, DT_CENTER);
    // A press that nobody has cleared yet; the POWER button's place is the lamp's.
    if (state.pressed == ButtonBit(button))
        DrawDot(hDC, (box.left + box.right) / 2 - (isPower ? 8 : 0), NAME_TOP + NAME_HEIGHT / 2, COLOR_REPORTED);
    if (isPower)
        DrawDot(hDC, (box.left + box.right) / 2, NAME_TOP + NAME_HEIGHT / 2,
                state.powered ? COLOR_LED_ON : COLOR_LED_OFF);
}

static void DrawPanel(HDC hDC, const MONITORSTATE &state, int heldButton)
{
    const RECT name = {BODY_EDGE + 6, NAME_TOP, BODY_EDGE + 120, NAME_TOP + NAME_HEIGHT};
    DrawLine(hDC, name, Widen(state.model), RGB(0xC8, 0xCC, 0xD2), DT_LEFT);
    for (int button = 1; button <= MONITOR_BUTTON_COUNT; button++)
        if (!state.labels[static_cast<size_t>(button - 1)].empty())
            DrawButton(hDC, state, button, button == heldButton);
}

void DrawMonitor(HDC hDC, const MONITORSTATE &state, int heldButton)
{
    const HFONT font = CreateFontW(-12, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, SHIFTJIS_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, VARIABLE_PITCH | FF_SWISS, L"MS UI Gothic");
    const HGDIOBJ oldFont = SelectObject(hDC, font);
    const RECT all = {0, 0, MONITOR_PICTURE_WIDTH, MONITOR_PICTURE_HEIGHT};
    FillBox(hDC, all, COLOR_BODY);
    DrawScreen(hDC, state);
    DrawPanel(hDC, state, heldButton);
    SelectObject(hDC, oldFont);
    DeleteObject(font);
}

int MonitorButtonAt(const MONITORSTATE &state, POINT point)
{
    for (int button = 1; button <= MONITOR_BUTTON_COUNT; button++) {
        const RECT box = MonitorButtonPlace(state, button);
        if (!state.labels[static_cast<size_t>(button - 1)].empty() && PtInRect(&box, point))
            return button;
    }
    return 0;
}
