// scenario: plays a session of a host and of the person at the editor from a script, and prints what happens.
#include "play/itself.h"
#include "play/options.h"
#include "play/player.h"
#include "play/source.h"
#include "script/failure.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

namespace
{

constexpr int kPlayed = 0;
constexpr int kNotPlayed = 1;
constexpr int kBadUsage = 2;

int PlayFile(const std::string &file, const scenario::Options &options)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        std::cerr << "scenario: cannot read " << file << "\n";
        return kBadUsage;
    }
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    try
    {
        scenario::Script script = scenario::ParseScript(file, text);
        script.folder = std::filesystem::absolute(file).parent_path();
        scenario::Source source(options);
        scenario::Player player(script, source, std::cout, options.showSql);
        const std::unique_ptr<scenario::Stage> stage = scenario::MakeStage(player);
        player.Play(*stage);
        return kPlayed;
    }
    catch (const scenario::Failure &failure)
    {
        std::cout.flush();
        std::cerr << failure.what() << "\n";
    }
    catch (const std::exception &problem)
    {
        std::cout.flush();
        std::cerr << file << ": " << problem.what() << "\n";
    }
    return kNotPlayed;
}

// The component keeps its settings for as long as its process lives: each scenario has a process of its own.
int PlayEach(const std::vector<std::string> &options, const std::vector<std::string> &files)
{
    int worst = kPlayed;
    for (const std::string &file : files)
    {
        std::vector<std::string> one = options;
        one.push_back(file);
        worst = std::max(worst, scenario::RunItself(one));
    }
    return worst;
}

} // namespace

int main(int count, char **values)
{
    scenario::LeaveLineEnds();
    std::string problem;
    const auto options = scenario::ParseOptions({values + 1, values + count}, problem);
    if (!options)
    {
        std::cerr << "scenario: " << problem << "\n" << scenario::kUsage;
        return kBadUsage;
    }
    if (options->help)
    {
        std::cout << scenario::kUsage;
        return kPlayed;
    }
    return options->files.size() == 1 ? PlayFile(options->files.front(), *options)
                                      : PlayEach(options->given, options->files);
}
