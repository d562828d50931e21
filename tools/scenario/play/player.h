// Plays a script on a stage and writes the transcript.
#pragma once

#include "play/answers.h"
#include "play/local_root.h"
#include "play/site_file.h"
#include "play/source.h"
#include "play/stage.h"
#include "script/script.h"

#include <cstddef>
#include <exception>
#include <ostream>
#include <string>

namespace scenario
{

class Player final : public Audience
{
public:
    Player(const Script &script, Source &source, std::ostream &out, bool showSql);

    // Plays all commands. Throws Failure at the first one that cannot be carried out, for a message box without an
    // answer and for an answer that is left over at the end.
    void Play(Stage &stage);

    // --- Audience
    std::string AnswerBox(const ShownBox &box) override;
    void ReportOpened(const std::string &path) override;
    void ShowFormReturned(int value) override;
    void PlayWhile(const std::function<bool()> &open) override;

private:
    void PlayOne();
    void CarryOut(const Command &command);
    void SetSite(const Command &command);
    void SetRegistry(const Command &command);
    void Print(const std::string &line) { m_out << line << "\n"; }
    void PrintStatements();
    // Keeps the first reason; no command is played any more.
    void GiveUp(int line, const std::string &reason);
    // Tells the failure and ends this process with status 1.
    [[noreturn]] void EndProgram();

    const Script &m_script;
    Source &m_source;
    std::ostream &m_out;
    bool m_showSql;
    std::optional<std::string> m_without; // of the command that is carried out
    Stage *m_stage = nullptr;
    std::size_t m_next = 0;
    Answers m_answers;
    SiteFile m_site;
    std::string m_iniFile; // empty: the host has named none
    LocalRoot m_localRoot;
    std::exception_ptr m_failure;
    int m_boxesUnanswered = 0;
};

} // namespace scenario
