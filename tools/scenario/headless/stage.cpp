// The headless stage: see stage.h.
#include "headless/stage.h"

#include "editor/controls/button.h"
#include "editor/controls/check_box.h"
#include "editor/controls/combo_box.h"
#include "editor/controls/list_view.h"
#include "editor/controls/tab_control.h"
#include "editor/frmHeadings.h"
#include "headless/desktop.h"
#include "headless/view.h"
#include "host/clsConfig.h"
#include "play/machine_registry.h"
#include "script/failure.h"

namespace scenario
{

namespace
{

namespace controls = editor::controls;

ListState StateOf(const controls::ListView &list)
{
    ListState state;
    state.enabled = list.Enabled();
    state.sorted = list.Sorted();
    state.descending = list.GetSortOrder() == controls::SortOrder::Descending;
    state.sortKey = list.SortKey();
    state.hasSecondColumn = list.Columns().size() > 1;
    for (int position = 1; position <= list.Count(); ++position)
    {
        const controls::ListItem &item = list.Item(position);
        state.items.push_back({item.key, item.text, item.second});
    }
    state.selected = list.SelectedPosition() - 1;
    return state;
}

ComboState StateOf(const controls::ComboBox &combo)
{
    ComboState state;
    state.enabled = combo.Enabled();
    for (int position = 0; position < combo.ListCount(); ++position)
        state.entries.push_back({combo.List(position), combo.ItemData(position)});
    state.selected = combo.ListIndex();
    return state;
}

class HeadlessStage final : public Stage
{
public:
    explicit HeadlessStage(Audience &audience) : m_audience(audience), m_desktop(audience)
    {
        editor::RegisterForms();
        editor::SetFormViewFactory([this](editor::StagedForm &form)
                                   { return std::make_unique<HeadlessView>(form, m_audience, m_view); });
    }
    ~HeadlessStage() override { editor::SetFormViewFactory(nullptr); }

    void SetProperty(const std::string &name, const PropertyValue &value) override;
    void SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value) override
    {
        m_registry.Set(key, name, value);
    }
    void Show() override { m_audience.ShowFormReturned(m_config->ShowForm()); }
    bool WindowIsOpen() override { return m_view != nullptr; }

    void ShowTab(int tab) override
    {
        if (!Get<controls::TabControl>("SSTab1", "tab control").ClickTab(tab))
            throw Refusal("there is no tab " + std::to_string(tab));
    }
    void Choose(const std::string &combo, int position) override
    {
        Acted(Reachable<controls::ComboBox>(combo, "drop-down list").Choose(position), combo);
    }
    void Pick(const std::string &list, int position) override
    {
        Acted(Reachable<controls::ListView>(list, "list").Select(position + 1), list);
    }
    void ClickColumn(const std::string &list, int column) override
    {
        if (!Reachable<controls::ListView>(list, "list").ClickColumn(column))
            throw Refusal(list + " has no column header " + std::to_string(column));
    }
    void Rename(const std::string &list, const std::string &text) override;
    void EscapeEdit(const std::string &list) override;
    void Toggle(const std::string &box) override
    {
        Acted(Reachable<controls::CheckBox>(box, "check box").Toggle(), box);
    }
    void Click(const std::string &button) override
    {
        Acted(Reachable<controls::Button>(button, "button").Click(), button);
    }
    void Close() override { m_view->Form().CloseByUser(); }

    ControlState Read(const std::string &name) override;

private:
    template <class T>
    T &Get(const std::string &name, const char *kind)
    {
        T *const control = dynamic_cast<T *>(m_view->Form().Controls().Find(name));
        if (!control)
            throw Refusal("there is no " + std::string(kind) + " " + name);
        return *control;
    }

    template <class T>
    T &Reachable(const std::string &name, const char *kind)
    {
        T &control = Get<T>(name, kind);
        if (!control.Shown())
            throw Refusal(name + " is hidden");
        if (!control.Reachable())
            throw Refusal(name + " is disabled");
        return control;
    }

    // Ending a label edit elsewhere may have taken the control away.
    static void Acted(bool done, const std::string &name)
    {
        if (!done)
            throw Refusal(name + " cannot be reached any more");
    }

    Audience &m_audience;
    HeadlessDesktop m_desktop;
    MachineRegistry m_registry;
    runtime::Ref<host::clsConfig> m_config = runtime::MakeRef<host::clsConfig>();
    HeadlessView *m_view = nullptr;
};

void HeadlessStage::SetProperty(const std::string &name, const PropertyValue &value)
{
    host::clsConfig &config = *m_config;
    const auto number = std::get_if<std::int16_t>(&value);
    const auto text = std::get_if<std::string>(&value);
    if (name == "PartitionID")
        config.SetPartitionID(std::get<std::int32_t>(value));
    else if (name == "User_ID")
        config.SetUser_ID(*number);
    else if (name == "DebugMode")
        config.SetDebugMode(*number);
    else if (name == "SqlTimeout")
        config.SetSqlTimeout(*number);
    else if (name == "LogFile")
        config.SetLogFile(*text);
    else if (name == "SqlServerName")
        config.SetSqlServerName(*text);
    else if (name == "Password")
        config.SetPassword(*text);
    else if (name == "SqlUserName")
        config.SetSqlUserName(*text);
    else if (name == "SqlDbName")
        config.SetSqlDbName(*text);
    else if (name == "SQLDSN")
        config.SetSQLDSN(*text);
    else
        config.SetZentra_INIFile(*text);
}

void HeadlessStage::Rename(const std::string &name, const std::string &text)
{
    auto &list = Reachable<controls::ListView>(name, "list");
    if (list.Count() == 0)
        throw Refusal(name + " has no item to rename");
    // Refused, by the list or by the program: nothing happens.
    if (list.BeginLabelEdit())
        list.EndLabelEdit(text, controls::EditEnd::Enter);
}

void HeadlessStage::EscapeEdit(const std::string &name)
{
    auto &list = Reachable<controls::ListView>(name, "list");
    if (!list.Editing())
        throw Refusal(name + " has no label edit open");
    list.EndLabelEdit({}, controls::EditEnd::Escape);
}

ControlState HeadlessStage::Read(const std::string &name)
{
    if (name == "frmHeadings")
        return WindowState{m_desktop.Topmost()};
    const controls::Control *const control = m_view->Form().Controls().Find(name);
    if (const auto *const list = dynamic_cast<const controls::ListView *>(control))
        return StateOf(*list);
    if (const auto *const combo = dynamic_cast<const controls::ComboBox *>(control))
        return StateOf(*combo);
    if (const auto *const box = dynamic_cast<const controls::CheckBox *>(control))
        return BoxState{box->Enabled(), box->Value() != 0};
    if (const auto *const button = dynamic_cast<const controls::Button *>(control))
        return ButtonState{button->Enabled(), button->Caption()};
    throw Refusal("there is no control " + name + " whose state could be read");
}

} // namespace

std::unique_ptr<Stage> MakeHeadlessStage(Audience &audience)
{
    return std::make_unique<HeadlessStage>(audience);
}

} // namespace scenario
