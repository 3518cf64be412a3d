// The system library through which a Windows program tells screen readers what its windows show,
// as the tests put it into their own Wine: Wine's lets no other process ask for a value, a tick or
// a grid. The unchanged program loads it, hands it what it hands every screen reader, and the tests
// read that. It never acts on the program.
//
// Protocol: the asking process makes a file mapping named after the program's process id, writes a
// question into it and sends the window WM_GETOBJECT, as screen readers do. The message's result is
// the size of the answer, JSON in UTF-8, which then stands in the mapping; it is 0 when there is
// none. Questions, zero-terminated:
//   "tree"         every element of the window in order, but not the cells of its grids
//   "grid <name>"  the cells of that grid
//   "shows <name>" where the cells of that grid stand

#include <windows.h>

#include <ole2.h>
#include <uiautomationcore.h>

#include "tests/endtoend/reader/Patterns.h"
#include "tests/endtoend/reader/Protocol.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

namespace {

/// Holds a COM object and lets go of it.
template <typename Interface>
class Held
{
public:
    Held() = default;
    explicit Held(Interface *object)
        : m_object(object)
    {
    }
    Held(Held &&other) noexcept
        : m_object(other.m_object)
    {
        other.m_object = nullptr;
    }
    Held &operator=(Held &&other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Held()
    {
        if (m_object != nullptr)
            m_object->Release();
    }

    Interface *operator->() const { return m_object; }
    Interface *Get() const { return m_object; }
    Interface **Place() { return &m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    Interface *m_object = nullptr;
};

using Simple = Held<IRawElementProviderSimple>;
using Fragment = Held<IRawElementProviderFragment>;

std::string Utf8(const wchar_t *text, int length)
{
    std::string bytes(3 * static_cast<size_t>(length), '\0');
    const int size = WideCharToMultiByte(
        CP_UTF8, 0, text, length, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(size));
    return bytes;
}

std::string Taken(BSTR text)
{
    std::string bytes
        = text == nullptr ? std::string() : Utf8(text, static_cast<int>(SysStringLen(text)));
    SysFreeString(text);
    return bytes;
}

std::string Quoted(const std::string &text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            quoted += escaped;
        } else {
            quoted += c;
        }
    }
    return quoted.append(1, '"');
}

std::string Text(const Simple &element, PROPERTYID property)
{
    VARIANT value;
    VariantInit(&value);
    if (FAILED(element->GetPropertyValue(property, &value)) || value.vt != VT_BSTR)
        return {};
    return Taken(value.bstrVal);
}

int Number(const Simple &element, PROPERTYID property)
{
    VARIANT value;
    VariantInit(&value);
    if (FAILED(element->GetPropertyValue(property, &value)) || value.vt != VT_I4)
        return 0;
    return value.lVal;
}

bool Flag(const Simple &element, PROPERTYID property)
{
    VARIANT value;
    VariantInit(&value);
    return SUCCEEDED(element->GetPropertyValue(property, &value)) && value.vt == VT_BOOL
        && value.boolVal != VARIANT_FALSE;
}

template <typename Pattern>
Held<Pattern> PatternOf(const Simple &element, PATTERNID id, const IID &iid)
{
    Held<IUnknown> offered;
    Held<Pattern> pattern;
    if (SUCCEEDED(element->GetPatternProvider(id, offered.Place())) && offered)
        offered->QueryInterface(iid, reinterpret_cast<void **>(pattern.Place()));
    return pattern;
}

std::string ValueOf(const Simple &element)
{
    const auto pattern = PatternOf<ValuePattern>(element, UIA_ValuePatternId, IID_ValuePattern);
    BSTR value = nullptr;
    if (!pattern || FAILED(pattern->get_Value(&value)))
        return {};
    return Taken(value);
}

bool IsChecked(const Simple &element)
{
    if (const auto choice = PatternOf<SelectionItemPattern>(
            element, UIA_SelectionItemPatternId, IID_SelectionItemPattern)) {
        BOOL isChosen = FALSE;
        return SUCCEEDED(choice->get_IsSelected(&isChosen)) && isChosen != FALSE;
    }
    const auto tick = PatternOf<TogglePattern>(element, UIA_TogglePatternId, IID_TogglePattern);
    int state = 0;
    return tick && SUCCEEDED(tick->get_ToggleState(&state)) && state == TogglePattern::On;
}

Held<GridPattern> GridOf(const Simple &element)
{
    return PatternOf<GridPattern>(element, UIA_GridPatternId, IID_GridPattern);
}

Fragment FragmentOf(const Simple &element)
{
    Fragment fragment;
    element->QueryInterface(
        IID_IRawElementProviderFragment, reinterpret_cast<void **>(fragment.Place()));
    return fragment;
}

Simple SimpleOf(const Fragment &fragment)
{
    Simple element;
    fragment->QueryInterface(
        IID_IRawElementProviderSimple, reinterpret_cast<void **>(element.Place()));
    return element;
}

/// In the display's pixels.
std::string PlaceOf(const Fragment &fragment)
{
    UiaRect place{};
    if (fragment)
        fragment->get_BoundingRectangle(&place);
    char text[128];
    std::snprintf(text, sizeof text, "\"x\":%.0f,\"y\":%.0f,\"width\":%.0f,\"height\":%.0f",
        place.left, place.top, place.width, place.height);
    return text;
}

std::string Truth(bool isTrue)
{
    return isTrue ? "true" : "false";
}

std::string Describe(const Simple &element, const Fragment &fragment)
{
    std::string text = "{";
    const auto tell = [&](const char *what, const std::string &value) {
        text.append(1, '"').append(what).append("\":").append(value).append(1, ',');
    };
    tell("id", Quoted(Text(element, UIA_AutomationIdPropertyId)));
    tell("class", Quoted(Text(element, UIA_ClassNamePropertyId)));
    tell("type", std::to_string(Number(element, UIA_ControlTypePropertyId)));
    tell("name", Quoted(Text(element, UIA_NamePropertyId)));
    tell("value", Quoted(ValueOf(element)));
    tell("enabled", Truth(Flag(element, UIA_IsEnabledPropertyId)));
    tell("focused", Truth(Flag(element, UIA_HasKeyboardFocusPropertyId)));
    tell("checked", Truth(IsChecked(element)));
    return text.append(PlaceOf(fragment)).append(1, '}');
}

Fragment Next(const Fragment &from, NavigateDirection direction)
{
    Fragment next;
    from->Navigate(direction, next.Place());
    return next;
}

/// Calls for the fragment and all below it; the cells of a grid are left out.
template <typename Visit>
void Walk(const Fragment &fragment, const Visit &visit)
{
    const Simple element = SimpleOf(fragment);
    visit(element, fragment);
    if (GridOf(element))
        return;
    for (Fragment child = Next(fragment, NavigateDirection_FirstChild); child;
         child = Next(child, NavigateDirection_NextSibling))
        Walk(child, visit);
}

std::string Tree(const Fragment &root)
{
    std::string elements;
    Walk(root, [&](const Simple &element, const Fragment &fragment) {
        elements.append(elements.empty() ? "[" : ",\n").append(Describe(element, fragment));
    });
    return elements.append(1, ']');
}

/// Whether a control of that name ends the path of names.
bool Ends(const std::string &path, const std::string &name)
{
    const std::string::size_type dot = path.rfind('.');
    return (dot == std::string::npos ? path : path.substr(dot + 1)) == name;
}

template <typename Tell>
std::string Grid(const Fragment &root, const std::string &name, const Tell &tell)
{
    std::string answer = "[";
    Walk(root, [&](const Simple &element, const Fragment &) {
        const auto grid = GridOf(element);
        if (!grid || !Ends(Text(element, UIA_AutomationIdPropertyId), name))
            return;
        int rows = 0;
        int columns = 0;
        grid->get_RowCount(&rows);
        grid->get_ColumnCount(&columns);
        for (int row = 0; row < rows; ++row) {
            answer += row == 0 ? "[" : ",\n[";
            for (int column = 0; column < columns; ++column) {
                Simple cell;
                grid->GetItem(row, column, cell.Place());
                answer.append(column == 0 ? "" : ",").append(cell ? tell(cell) : "null");
            }
            answer += ']';
        }
    });
    return answer.append(1, ']');
}

std::string Answer(const std::string &question, IRawElementProviderSimple *window)
{
    window->AddRef();
    const Fragment root = FragmentOf(Simple(window));
    if (!root)
        return {};
    const std::string::size_type blank = question.find(' ');
    const std::string name = blank == std::string::npos ? "" : question.substr(blank + 1);
    if (question == "tree")
        return Tree(root);
    if (question.rfind("grid ", 0) == 0)
        return Grid(
            root, name, [](const Simple &cell) { return Quoted(Text(cell, UIA_NamePropertyId)); });
    if (question.rfind("shows ", 0) == 0)
        return Grid(root, name, [](const Simple &cell) {
            return std::string("{").append(PlaceOf(FragmentOf(cell))).append(1, '}');
        });
    return {};
}

} // namespace

extern "C" {

__declspec(dllexport) LRESULT WINAPI
    UiaReturnRawElementProvider(HWND, WPARAM, LPARAM what, IRawElementProviderSimple *window)
{
    if (static_cast<LONG>(what) != ReaderObjectId || window == nullptr)
        return 0;
    const std::wstring name = ReaderPageName + std::to_wstring(GetCurrentProcessId());
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_WRITE, FALSE, name.c_str());
    if (mapping == nullptr)
        return 0;
    LRESULT size = 0;
    if (auto *page = static_cast<char *>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0))) {
        const std::string answer = Answer(page, window);
        if (answer.size() <= ReaderPageBytes) {
            std::memcpy(page, answer.data(), answer.size());
            size = static_cast<LRESULT>(answer.size());
        }
        UnmapViewOfFile(page);
    }
    CloseHandle(mapping);
    return size;
}

__declspec(dllexport) HRESULT WINAPI UiaHostProviderFromHwnd(HWND, IRawElementProviderSimple **host)
{
    *host = nullptr;
    return E_NOTIMPL;
}

__declspec(dllexport) BOOL WINAPI UiaClientsAreListening()
{
    return FALSE; // they ask; nobody waits for events
}

__declspec(dllexport) HRESULT WINAPI UiaRaiseAutomationPropertyChangedEvent(
    IRawElementProviderSimple *, PROPERTYID, VARIANT, VARIANT)
{
    return S_OK;
}

__declspec(dllexport) HRESULT WINAPI UiaRaiseAutomationEvent(IRawElementProviderSimple *, EVENTID)
{
    return S_OK;
}

} // extern "C"
