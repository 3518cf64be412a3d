// The display on which the tests themselves were started. What they send goes to the window in
// front of the user, as from a keyboard and a mouse: keep other windows out of the way.

#include "tests/endtoend/driver/VirtualDisplay.h"

#include <QImage>
#include <QStringList>

#include <windows.h>

#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Of both axes of the whole display, in what SendInput calls absolute.
constexpr int AbsoluteSteps = 65536;

INPUT KeyInput(WORD key, DWORD flags)
{
    // The arrows and what stands above them are not those of the block of numbers.
    const bool isExtended = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE;
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags | (isExtended ? KEYEVENTF_EXTENDEDKEY : 0);
    return input;
}

INPUT LetterInput(QChar letter, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = letter.unicode();
    input.ki.dwFlags = flags | KEYEVENTF_UNICODE;
    return input;
}

void Send(std::vector<INPUT> inputs)
{
    if (SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) != inputs.size())
        throw std::runtime_error("the display takes no input");
}

/// All down in order, and up again in the opposite one.
std::vector<INPUT> Pressed(const std::vector<WORD> &keys)
{
    std::vector<INPUT> inputs;
    for (const WORD key : keys)
        inputs.push_back(KeyInput(key, 0));
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        inputs.push_back(KeyInput(*key, KEYEVENTF_KEYUP));
    return inputs;
}

/// As the keyboard writes it; what is on no key comes from nowhere, as from an input method.
std::vector<INPUT> Typed(QChar letter)
{
    const SHORT found = VkKeyScanW(letter.unicode());
    const int shift = HIBYTE(found);
    if (found == -1 || shift > 1)
        return {LetterInput(letter, 0), LetterInput(letter, KEYEVENTF_KEYUP)};
    const WORD key = LOBYTE(found);
    return Pressed(shift == 1 ? std::vector<WORD>{VK_SHIFT, key} : std::vector<WORD>{key});
}

WORD KeyNamed(const QString &name)
{
    static const QMap<QString, WORD> keys{{u"Return"_s, VK_RETURN}, {u"Tab"_s, VK_TAB},
        {u"Escape"_s, VK_ESCAPE}, {u"Up"_s, VK_UP}, {u"Down"_s, VK_DOWN}, {u"Left"_s, VK_LEFT},
        {u"Right"_s, VK_RIGHT}, {u"Home"_s, VK_HOME}, {u"End"_s, VK_END}, {u"F1"_s, VK_F1},
        {u"F2"_s, VK_F2}, {u"alt"_s, VK_MENU}, {u"ctrl"_s, VK_CONTROL}, {u"shift"_s, VK_SHIFT}};
    if (name.size() == 1)
        return LOBYTE(VkKeyScanW(name[0].unicode()));
    const auto key = keys.find(name);
    if (key == keys.end())
        throw std::runtime_error("no such key: " + name.toStdString());
    return *key;
}

/// The whole display, or the part of it that a window with its frame covers.
QImage PictureOf(const RECT &part)
{
    const int width = part.right - part.left;
    const int height = part.bottom - part.top;
    QImage picture(width, height, QImage::Format_RGB32);
    const HDC screen = GetDC(nullptr);
    const HDC copy = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ before = SelectObject(copy, bitmap);
    BitBlt(copy, 0, 0, width, height, screen, part.left, part.top, SRCCOPY);
    SelectObject(copy, before);
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = width;
    format.bmiHeader.biHeight = -height; // the top row comes first
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    const int rows = GetDIBits(
        copy, bitmap, 0, static_cast<UINT>(height), picture.bits(), &format, DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(copy);
    ReleaseDC(nullptr, screen);
    if (rows != height)
        throw std::runtime_error("the display cannot be photographed");
    return picture;
}

void Keep(const QImage &picture, const QString &fileName)
{
    if (!picture.save(fileName))
        throw std::runtime_error("the picture cannot be kept");
}

} // namespace

class VirtualDisplay::Screen
{
};

VirtualDisplay::VirtualDisplay(QSize size)
{
    if (GetSystemMetrics(SM_CXSCREEN) < size.width()
        || GetSystemMetrics(SM_CYSCREEN) < size.height())
        throw std::runtime_error("the display is too small");
}

VirtualDisplay::~VirtualDisplay() = default;

QMap<QString, QString> VirtualDisplay::Environment() const
{
    return {};
}

void VirtualDisplay::Type(const QString &text) const
{
    std::vector<INPUT> inputs;
    for (const QChar letter : text) {
        for (const INPUT &input : Typed(letter))
            inputs.push_back(input);
    }
    Send(inputs);
}

void VirtualDisplay::Key(const QString &keys) const
{
    std::vector<WORD> pressed;
    for (const QString &name : keys.split(u'+'))
        pressed.push_back(KeyNamed(name));
    Send(Pressed(pressed));
}

void VirtualDisplay::Click(int x, int y) const
{
    const auto absolute = [](int pixel, int pixels) {
        return (pixel * AbsoluteSteps + AbsoluteSteps / 2) / pixels;
    };
    std::vector<INPUT> inputs(3);
    for (INPUT &input : inputs)
        input.type = INPUT_MOUSE;
    inputs[0].mi.dx = absolute(x, GetSystemMetrics(SM_CXSCREEN));
    inputs[0].mi.dy = absolute(y, GetSystemMetrics(SM_CYSCREEN));
    inputs[0].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    inputs[1].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    inputs[2].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    Send(inputs);
}

qulonglong VirtualDisplay::WindowWithKeyboard() const
{
    return reinterpret_cast<qulonglong>(GetForegroundWindow());
}

void VirtualDisplay::Screenshot(const QString &fileName) const
{
    Keep(PictureOf({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}), fileName);
}

void VirtualDisplay::Screenshot(const QString &fileName, qulonglong window) const
{
    RECT frame{};
    GetWindowRect(reinterpret_cast<HWND>(window), &frame);
    Keep(PictureOf(frame), fileName);
}
