// The keyboard on each tab: tab stops, and the access keys of the Add and Delete buttons.
#include "editor/frmHeadings.h"

namespace editor
{

namespace
{

void SetTabStops(std::initializer_list<controls::Control *> list, bool tabStop)
{
    for (controls::Control *const control : list)
        control->SetTabStop(tabStop);
}

} // namespace

void frmHeadings::ResetTabStates()
{
    SetTabStops({&chkTagKnown, &chkTagMixed, &lvwHeadings, &cmbAccList, &lvwReportType, &cmbFormats, &btnAddHead,
                 &btnDeleteHead, &btnAllReports, &btnAllAccounts},
                false);
    btnAddHead.SetCaption("Add");
    btnDeleteHead.SetCaption("Delete");
    btnAdd.SetCaption("Add");
    btnDelete.SetCaption("Delete");
    lvwFormats.SetTabStop(false);
    for (auto box = SSCheck1.rbegin(); box != SSCheck1.rend(); ++box)
        (*box)->SetTabStop(false);
    SetTabStops({&btnAdd, &btnDelete}, false);
}

void frmHeadings::ApplyTabStates()
{
    switch (SSTab1.Tab())
    {
    case 0:
        SetTabStops({&chkTagKnown, &chkTagMixed}, true);
        break;
    case 1:
    {
        lvwFormats.SetTabStop(true);
        for (auto box = SSCheck1.rbegin(); box != SSCheck1.rend(); ++box)
            (*box)->SetTabStop(true);
        btnAdd.SetCaption("&Add");
        btnDelete.SetCaption("&Delete");
        SetTabStops({&btnAdd, &btnDelete}, true);
        // Without a partition nothing can be filled: then the boxes and Delete have nothing to act on.
        runtime::ErrorTrap filling;
        filling.Try([&] { FillFormatLists(false, true); });
        SelectFirstFormat();
        break;
    }
    case 2:
        SetTabStops({&lvwHeadings, &cmbAccList, &lvwReportType, &cmbFormats, &btnAddHead, &btnDeleteHead,
                     &btnAllReports, &btnAllAccounts},
                    true);
        btnDeleteHead.SetCaption("&Delete");
        btnAddHead.SetCaption("&Add");
        break;
    default:
        break;
    }
}

void frmHeadings::SSTab1_Click()
{
    ResetTabStates();
    ApplyTabStates();
}

} // namespace editor
