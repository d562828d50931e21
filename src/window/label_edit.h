// The native edit field of a list in which a label is edited in place.
#pragma once

#include "editor/controls/list_view.h"

#include <windows.h>

#include <optional>
#include <string>

namespace window
{

// Enter and Escape are taken from the field, so that they can be told from leaving it. The native list closes the field
// by itself when it loses the keyboard, or scrolls: what had been typed is kept, and counts as left a moment later,
// when the system is done with what it was doing.
class LabelEdit
{
public:
    // The message to the list by which leaving is put off.
    static constexpr UINT kLeft = WM_APP + 2;

    explicit LabelEdit(editor::controls::ListView &list) : m_list(list) {}

    // False when the native list opens the field by itself just now.
    bool Wanted(int row) const { return m_beginning != row; }
    // True while the program opens the field.
    bool Opening() const { return m_opening >= 0; }
    // Opens the field.
    void Open(HWND list, int row);
    // Closes it, if it is open.
    void Close(HWND list);
    // The field that is open; null without one.
    static HWND Field(HWND list);

    // The native list is about to open the field. False: it is not to.
    bool Begins(HWND list, int row);
    // The native list has closed the field.
    void Ended(HWND list);
    void Leave();

    // The text of the field, or its text when it was closed. Nothing when no label is edited, or when that text is not
    // known and counts as unchanged.
    std::optional<std::string> Typed() const;

private:
    static LRESULT CALLBACK Procedure(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR self);
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam);
    void Watch(HWND field);

    editor::controls::ListView &m_list;
    HWND m_field = nullptr;
    int m_opening = -1;   // the row whose field is opened by program
    int m_beginning = -1; // the row whose field the native list opens by itself
    bool m_closing = false;
    std::optional<std::string> m_typed; // what stood in a field that is gone
};

} // namespace window
