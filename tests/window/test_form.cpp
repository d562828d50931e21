// A form for the tests of the window.
#include "window/test_form.h"

#include "editor/layout.h"
#include "window/register.h"

#include <initializer_list>

namespace window_tests
{

using namespace editor::controls;

TestForm::TestForm()
    : m_caption(editor::kCaption), m_clientWidth(editor::kClientWidth), m_clientHeight(editor::kClientHeight)
{
}

void TestForm::Load()
{
    window::Register();
    m_view = editor::MakeFormView(*this);
    m_loaded = true;
    m_view->Create();
    OpenStrip();
    FillLists();
}

void TestForm::OpenStrip()
{
    for (const char *const name : {"SSTab1", "btnPrint", "btnSave", "btnCancel"})
    {
        Control &control = *Controls().Find(name);
        editor::controls::Rectangle place = control.Bounds();
        place.top += editor::kStripHeight;
        control.SetBounds(place);
    }
    m_controls.labPartition.SetVisible(true);
    m_controls.cmbPartition.SetVisible(true);
    m_clientHeight += editor::kStripHeight;
    m_view->ClientSizeChanged();
    for (const char *const name : {"lvwFormats", "lvwHeadings"})
    {
        Get<ListView>(name).SetHideColumnHeaders(false);
        Get<ListView>(name).AddColumn(2, {"C2", "Partition", 2000});
    }
}

void TestForm::FillLists()
{
    auto &partitions = Get<ComboBox>("cmbPartition");
    for (const char *const name : {"Mercy Hospital", "Mercy Hospital / Radiology", "Mercy Hospital / Cardiology"})
        partitions.AddItem(name);
    partitions.SetListIndex(0);

    auto &formats = Get<ListView>("lvwFormats");
    auto &choices = Get<ComboBox>("cmbFormats");
    int id = 0;
    for (const char *const name : {"Bold with colon", "Default", "Indented", "New line", "Underlined"})
    {
        formats.Add("Key" + std::to_string(++id) + "-1", name, "Mercy Hospital");
        choices.AddItem(name);
    }
    formats.SetSorted(true);
    choices.SetListIndex(1);

    auto &headings = Get<ListView>("lvwHeadings");
    {
        const UpdateLock lock(headings);
        for (int i = 1; i <= 200; ++i)
            headings.Add("Key" + std::to_string(i) + "-1", "HEADING " + std::to_string(i), "Mercy Hospital");
    }
    headings.Add("Key900-1", "IMPRESSION", "Mercy Hospital");
    headings.Add("Key901-1", "INDICATION", "Mercy Hospital");

    auto &accounts = Get<ComboBox>("cmbAccList");
    for (const char *const name : {"<All New>", "County General", "Saint Anne"})
        accounts.AddItem(name);
    accounts.SetListIndex(1);
    auto &reports = Get<ListView>("lvwReportType");
    for (const char *const name : {"<All New>", "Chest X-ray", "CT abdomen", "Discharge summary"})
        reports.Add(std::string("Key") + name, name);
    m_controls.btnDelete.SetEnabled(false);
    Get<CheckBox>("chkTagKnown").SetValue(1);
}

void TestForm::Run()
{
    m_view->Show();
    m_view->RunModal();
    m_view->Destroy();
}

void TestForm::Unload()
{
    if (!m_loaded)
        return;
    m_loaded = false;
    Controls().SetOpen(false);
    m_view->EndModal();
}

bool TestForm::CloseByUser()
{
    ++closes;
    if (!stays)
        Unload();
    return !m_loaded;
}

void TestForm::HostDestroyed()
{
    ++destroyed;
    Unload();
}

} // namespace window_tests
