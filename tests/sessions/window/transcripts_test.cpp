// Random sessions played as scenarios on both stages: statements, boxes, reports and all that the window shows are the
// same on the real window.
#include "headless/stage.h"
#include "play/options.h"
#include "play/player.h"
#include "script/failure.h"
#include "sessions/session.h"
#include "sessions/window/real_window.h"
#include "support/test_folder.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace sessions
{

namespace
{

constexpr const char *kDump =
    "dump frmHeadings cmbPartition chkTagKnown chkTagMixed lvwFormats btnAdd btnDelete SSCheck1(0) SSCheck1(1) "
    "SSCheck1(2) SSCheck1(3) SSCheck1(4) SSCheck1(5) lvwHeadings btnAddHead btnDeleteHead cmbAccList lvwReportType "
    "cmbFormats btnAllAccounts btnAllReports btnPrint btnSave btnCancel\n";

template <class MakeStage>
std::string Transcript(const std::string &text, MakeStage &&makeStage)
{
    std::ostringstream out;
    try
    {
        scenario::Script script = scenario::ParseScript("session", text);
        script.folder = support::SourcePath("tests/sessions");
        scenario::Source source({});
        scenario::Player player(script, source, out, true);
        player.Play(*makeStage(player));
    }
    catch (const std::exception &problem)
    {
        out << problem.what() << "\n";
    }
    // A message box above everything looks like any other while the editor, which owns it, is above everything.
    static const std::regex systemModal("\nbox 4096 ");
    return std::regex_replace(out.str(), systemModal, "\nbox 0 ");
}

TEST_F(RealWindow, HasTheTranscriptsOfTheHeadlessStage)
{
    std::size_t lines = 0;
    const unsigned first = First(), count = Count(5);
    for (unsigned seed = first; seed < first + count; ++seed)
    {
        std::string text;
        {
            Site site;
            const Outcome outcome = PlayRandom(site, seed);
            ASSERT_EQ(outcome.mismatch, "") << "seed " << seed;
            text = ToScenario(outcome.played, kDump);
        }
        const std::string headless =
            Transcript(text, [](scenario::Audience &audience) { return scenario::MakeHeadlessStage(audience); });
        ForgetComponent();
        const std::string window = Transcript(text, [](scenario::Audience &audience)
                                              { return std::make_unique<scenario::WindowStage>(audience); });
        ASSERT_EQ(headless, window) << "seed " << seed;
        EXPECT_NE(headless.find("returned 0"), std::string::npos) << "no window was ever opened by seed " << seed;
        lines += static_cast<std::size_t>(std::ranges::count(headless, '\n'));
    }
    std::printf("%u sessions from seed %u on, %zu lines of transcript\n", count, first, lines);
}

} // namespace

} // namespace sessions
