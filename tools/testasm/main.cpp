// mlds-testasm: assembles rule tests, and shows what is in assembled ones.
#include <getopt.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>

#include "mlds/testasm/file.h"
#include "mlds/testasm/testasm.h"
#include "mlds/testasm/text.h"
#include "mlds/testasm/validate.h"
#include "mlds/version.h"

namespace {

using namespace mlds_testasm;

constexpr const char* kUsage = R"(usage: mlds-testasm [OPTION...] FILE

Assembles the rule tests in FILE (- is standard input). The language is described in
docs/testasm.md.

  -o, --output OUT     write the instructions to OUT
  -s, --schema SCHEMA  take the names of streams, fields and variables from SCHEMA; otherwise FILE
                       declares them
  -l, --list           print the instructions with their indices and bytes
  -c, --check          only say what is wrong
  -d, --disassemble    FILE holds instructions; print their text
      --opcodes        print the table of instructions
  -h, --help           print this help and exit
      --version        print the version and exit

The exit status is 0 if nothing was wrong (there may be warnings), 1 if something was, and 2 if the
command line was wrong or a file could not be read or written.
)";

constexpr int kBadUse = 2;

struct Options {
    std::string file;
    std::string output;
    std::string schema;
    bool bList = false;
    bool bCheck = false;
    bool bDisassemble = false;
};

int Complain(const std::string& message) {
    std::cerr << "mlds-testasm: " << message << '\n';
    return kBadUse;
}

std::optional<std::string> ReadFile(const std::string& path) {
    errno = 0;
    std::ifstream file;
    if (path != "-") file.open(path, std::ios::binary);
    std::istream& in = path == "-" ? std::cin : file;
    std::string content;
    char block[4096];
    const bool bOpen = in.good();
    while (in.read(block, sizeof block), in.gcount() > 0) {
        content.append(block, static_cast<std::size_t>(in.gcount()));
    }
    if (bOpen && !in.bad()) return content;
    Complain("cannot read " + path + ": " + std::strerror(errno != 0 ? errno : EIO));
    return std::nullopt;
}

bool WriteFile(const std::string& path, const std::string& content) {
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (file) return true;
    Complain("cannot write " + path + ": " + std::strerror(errno != 0 ? errno : EIO));
    return false;
}

// What is printed is out before anything else happens: nobody takes half a listing for a whole one,
// and no file that is opened later takes the place of a closed output.
bool Print(const std::string& text) {
    errno = 0;
    if (std::cout << text << std::flush) return true;
    Complain(std::string("cannot write to standard output: ") +
             std::strerror(errno != 0 ? errno : EIO));
    return false;
}

int Disassemble(const Options& options, const Schema& schema, const std::string& content) {
    Image image;
    std::string expected;
    if (!ReadImage(content, &image, &expected)) {
        std::cerr << options.file << ": error: expected " << expected << '\n';
        return 1;
    }
    Diagnostics diagnostics(options.file);
    const Program program = Lift(image, diagnostics);
    Validate(program, schema, diagnostics);
    const bool bPrinted = options.bCheck || Print(WriteProgram(program, schema));
    std::cerr << diagnostics.Text();
    if (!bPrinted) return kBadUse;
    return diagnostics.errors() > 0 ? 1 : 0;
}

int Assemble(const Options& options, Schema schema, const std::string& content) {
    const Assembly assembly = Assembler(std::move(schema)).Assemble(content, options.file);
    std::cerr << assembly.diagnostics().Text();
    if (!assembly.ok()) return 1;
    if (options.bList && !Print(Listing(assembly))) return kBadUse;
    if (options.output.empty() || options.bCheck) return 0;
    return WriteFile(options.output, WriteImage(assembly.image())) ? 0 : kBadUse;
}

int Run(const Options& options) {
    Schema schema;
    if (!options.schema.empty()) {
        const std::optional<std::string> declarations = ReadFile(options.schema);
        if (!declarations) return kBadUse;
        Diagnostics diagnostics(options.schema);
        schema = ReadSchema(*declarations, diagnostics);
        std::cerr << diagnostics.Text();
        if (diagnostics.errors() > 0) return 1;
    }
    const std::optional<std::string> content = ReadFile(options.file);
    if (!content) return kBadUse;
    return options.bDisassemble ? Disassemble(options, schema, *content)
                                : Assemble(options, std::move(schema), *content);
}

}  // namespace

int main(int argc, char** argv) {
    enum { optOpcodes = 1000, optVersion };
    static const option kLong[] = {{"output", required_argument, nullptr, 'o'},
                                   {"schema", required_argument, nullptr, 's'},
                                   {"list", no_argument, nullptr, 'l'},
                                   {"check", no_argument, nullptr, 'c'},
                                   {"disassemble", no_argument, nullptr, 'd'},
                                   {"opcodes", no_argument, nullptr, optOpcodes},
                                   {"help", no_argument, nullptr, 'h'},
                                   {"version", no_argument, nullptr, optVersion},
                                   {nullptr, 0, nullptr, 0}};
    Options options;
    for (int c; (c = getopt_long(argc, argv, "o:s:lcdh", kLong, nullptr)) != -1;) {
        switch (c) {
            case 'o': options.output = optarg; break;
            case 's': options.schema = optarg; break;
            case 'l': options.bList = true; break;
            case 'c': options.bCheck = true; break;
            case 'd': options.bDisassemble = true; break;
            case optOpcodes: return Print(OpcodeTable()) ? 0 : kBadUse;
            case optVersion: return Print("mlds-testasm " MLDS_VERSION "\n") ? 0 : kBadUse;
            case 'h': return Print(kUsage) ? 0 : kBadUse;
            default: return kBadUse;
        }
    }
    if (argc - optind != 1) return Complain("expected one FILE; see --help");
    options.file = argv[optind];
    const bool bIdle = !options.bDisassemble && !options.bList && !options.bCheck;
    if (bIdle && options.output.empty()) {
        return Complain("expected --output, --list, --check or --disassemble; see --help");
    }
    if (options.bDisassemble && (options.bList || !options.output.empty())) {
        return Complain("--disassemble goes with neither --list nor --output");
    }
    return Run(options);
}
