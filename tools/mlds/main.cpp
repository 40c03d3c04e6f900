// mlds: runs, checks, tests and traces rule files.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <functional>
#include <iostream>

#include "commands.h"
#include "mlds/version.h"
#include "program.h"

namespace {

using namespace mlds_program;

constexpr const char* kRules =
    "a rule file, or the name of a language: NAME.mlr is looked for in the folders of "
    "MLDS_LANGUAGES, then among the installed languages";
constexpr const char* kFiles = "texts, one utterance a line; - and none are standard input";

// Every command with what its part of the command line says, and what it then does.
struct CommandLine {
    CLI::App app{
        "Reads rules that make phones and other tiers of text, and runs, checks and tests them.",
        "mlds"};
    RunOptions run;
    CheckOptions check;
    TestOptions test;
    TraceOptions trace;
    ViewOptions view;
    ListOptions list;
    std::string newFile;
    std::function<int()> command;

    CommandLine() {
        app.set_version_flag("--version", "mlds " MLDS_VERSION, "Print the version and exit");
        app.require_subcommand(1);
        app.footer(
            "The exit status is 0 if all was right, 1 if an input or an assert failed, and 2 if a "
            "rule\nfile or the command line was wrong.");
        AddRun();
        AddCheck();
        AddTest();
        AddTrace();
        AddView();
        AddList();
        AddNew();
    }

    CLI::App* Add(const char* name, const char* what, std::function<int()> action,
                  std::string* pRules) {
        CLI::App* pCommand = app.add_subcommand(name, what);
        pCommand->callback([this, action = std::move(action)] { command = action; });
        if (pRules != nullptr) pCommand->add_option("RULES", *pRules, kRules)->required();
        return pCommand;
    }

    void AddRun() {
        CLI::App* p = Add(
            "run", "Print the tiers of every line of a text", [this] { return Run(run); },
            &run.rules);
        CLI::Option* pFiles = p->add_option("FILE", run.files, kFiles);
        CLI::Option* pText = p->add_option("--text", run.text, "Take this text, and no FILE");
        pText->excludes(pFiles)->each([this](const std::string&) { run.bText = true; });
        p->add_option("--format", run.format,
                      "What is made of an utterance: tiers, phones, ipa, "
                      "tsv, json, textgrid or svg")
            ->check(CLI::IsMember({"tiers", "phones", "ipa", "tsv", "json", "textgrid", "svg"}))
            ->capture_default_str();
        p->add_option("--out", run.folder, "The folder for files: textgrid and svg");
        p->add_option_function<std::string>(
             "--per", [this](const std::string& per) { run.bPerFile = per == "file"; },
             "A textgrid for every line, or for every file")
            ->check(CLI::IsMember({"line", "file"}));
        p->add_option("--rate", run.ratePercent, "How fast, in per cent: 200 is twice as fast")
            ->check(CLI::Range(25, 400))
            ->capture_default_str();
        p->add_option("--jobs", run.jobs, "How many lines are worked on at a time")
            ->check(CLI::Range(1, 256))
            ->capture_default_str();
        p->add_flag("--strict", run.bStrict, "As --unknown=error");
        p->add_option("--unknown", run.unknown,
                      "Characters that the language does not know: skip them with a warning, keep "
                      "an empty place, or make the line an error")
            ->check(CLI::IsMember({"skip", "keep", "error"}))
            ->capture_default_str();
    }

    void AddCheck() {
        CLI::App* p = Add(
            "check", "Say what is wrong with rules; nothing runs", [this] { return Check(check); },
            &check.rules);
        p->add_flag("--json", check.bJson, "For editors: all messages as JSON on standard output");
    }

    void AddTest() {
        CLI::App* p = Add(
            "test", "Try the asserts of a rule file, and tables of cases",
            [this] { return Test(test); }, &test.rules);
        p->add_option("CASES", test.cases,
                      "Tables: lines of a text, a TAB and what is expected of it");
        p->add_flag("--all", test.bAll, "Show all that failed, not only the first 20");
    }

    void AddTrace() {
        CLI::App* p = Add(
            "trace", "Show which rules were tried, what each wanted and what it found",
            [this] { return Trace(trace); }, &trace.rules);
        p->add_option("WORD", trace.words, "Words; with --counts, files")->required();
        p->add_option("--at", trace.at, "Only at this place of the word, counted from 1")
            ->check(CLI::PositiveNumber);
        p->add_option("--rule", trace.ruleLine, "Only the rule on this line of the file")
            ->check(CLI::PositiveNumber);
        p->add_flag("--all", trace.bAll, "Also rules for other letters");
        p->add_flag("--counts", trace.bCounts, "How often each rule was tried and held");
    }

    void AddView() {
        CLI::App* p = Add(
            "view", "As run, for people who watch in a viewer", [this] { return View(view); },
            &view.rules);
        p->add_option("FILE", view.files, kFiles);
        p->add_flag("--step", view.bStep, "Wait for Enter after every rule that holds");
    }

    void AddList() {
        CLI::App* p = Add(
            "list", "Print rules with their instructions", [this] { return List(list); },
            &list.rules);
        p->add_option("RANGE", list.which,
                      "Only these: lines of the rule file (19 or 19-24), or names of blocks");
    }

    void AddNew() {
        CLI::App* p = Add(
            "new", "Write a small commented rule file to start from",
            [this] { return New(newFile); }, nullptr);
        p->add_option("FILE", newFile, "What is there already is not written over")->required();
    }
};

// A closed standard stream would give its number to the next file that is opened, and that file
// would get the output. Something that cannot be written to takes its place.
void HoldStandardStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) != -1) continue;
        const int wrongWay = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::open("/dev/null", wrongWay) < 0) return;
    }
}

int Main(int argc, char** argv) {
    CommandLine line;
    try {
        line.app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        if (e.get_exit_code() == 0) {  // help and version
            line.app.exit(e);
            return FlushOutput() ? kDone : kFailed;
        }
        Complain(e.what());
        const auto commands = line.app.get_subcommands();
        const std::string command = commands.empty() ? "" : commands.front()->get_name() + ' ';
        std::cerr << "Try 'mlds " << command << "--help'.\n";
        return kBadUse;
    }
    return line.command();
}

}  // namespace

int main(int argc, char** argv) try {
    HoldStandardStreams();
    // A reader that has gone is an error like others: writing fails, and that is said.
    std::signal(SIGPIPE, SIG_IGN);
    std::ios::sync_with_stdio(false);
    return Main(argc, argv);
} catch (const std::exception& e) {
    Complain(e.what());
    return kFailed;
}
