#pragma once

#include <uiautomationclient.h>

// What a control can tell besides its properties, as Windows defines it; the compiler's own headers
// leave these interfaces out.

constexpr IID IID_ValuePattern{
    0xc7935180, 0x6fb3, 0x4201, {0xb1, 0x74, 0x7d, 0xf7, 0x3a, 0xdb, 0xf6, 0x4a}};
constexpr IID IID_TogglePattern{
    0x56d00bd0, 0xc4f4, 0x433c, {0xa8, 0x36, 0x1a, 0x52, 0xa5, 0x7e, 0x08, 0x92}};
constexpr IID IID_SelectionItemPattern{
    0x2acad808, 0xb2d4, 0x452d, {0xa4, 0x07, 0x91, 0xff, 0x1a, 0xd1, 0x67, 0xb2}};
constexpr IID IID_GridPattern{
    0xb17d6187, 0x0907, 0x464b, {0xa1, 0x68, 0x0e, 0xf1, 0x7a, 0x15, 0x72, 0xb1}};

// Such objects are let go with Release and never deleted.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

struct ValuePattern : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SetValue(LPCWSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Value(BSTR *value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsReadOnly(BOOL *isReadOnly) = 0;
};

struct TogglePattern : IUnknown
{
    static constexpr int On = 1;

    virtual HRESULT STDMETHODCALLTYPE Toggle() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ToggleState(int *state) = 0;
};

struct SelectionItemPattern : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Select() = 0;
    virtual HRESULT STDMETHODCALLTYPE AddToSelection() = 0;
    virtual HRESULT STDMETHODCALLTYPE RemoveFromSelection() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsSelected(BOOL *isSelected) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SelectionContainer(IUnknown **container) = 0;
};

struct GridPattern : IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetItem(int row, int column, IRawElementProviderSimple **item)
        = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RowCount(int *count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ColumnCount(int *count) = 0;
};

#pragma GCC diagnostic pop
