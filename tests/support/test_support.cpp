#include "support/test_support.h"

#include "base/paths.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>
#include <sys/wait.h>

namespace vantrel::test {

TempDir::TempDir() {
    std::string templ = (std::filesystem::temp_directory_path() / "vantrel-test-XXXXXX").string();
    if (!::mkdtemp(templ.data())) throw std::runtime_error("mkdtemp failed");
    path_ = templ;
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::vector<std::string> TempDir::Entries() const {
    return FolderEntries(path_);
}

std::vector<std::string> FolderEntries(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(dir, ec))
        names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void WriteText(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out) throw std::runtime_error("cannot write " + path);
}

std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

CliResult RunCli(const std::string& args, const std::string& prefix) {
    CliResult r;
    const char* cli = std::getenv("VANTREL_CLI");
    if (!cli) {
        ADD_FAILURE() << "VANTREL_CLI is not set: it names the vantrel-cli under test";
        return r;
    }
    TempDir scratch;
    const std::string errFile = scratch / "stderr";
    const std::string cmd = prefix + "'" + cli + "' " + args + " 2>'" + errFile + "'";
    FILE* p = ::popen(cmd.c_str(), "r");
    if (!p) return r;
    char buf[4096];
    while (std::size_t n = std::fread(buf, 1, sizeof buf, p))
        r.out.append(buf, n);
    int status = ::pclose(p);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    r.err = ReadWholeFile(errFile).value_or("");
    return r;
}

FixedClock::FixedClock(int year, int month, int day) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = 12;
    when = timegm(&t);
}

MsgAnswer ScriptedMessages::Show(const std::string& text, const std::string& title,
                                 MsgButtons buttons, MsgIcon icon) {
    shown.push_back({text, title, buttons, icon});
    if (buttons == MsgButtons::OK) return MsgAnswer::OK;
    if (answers.empty()) return MsgAnswer::Yes;
    MsgAnswer a = answers.front();
    answers.erase(answers.begin());
    return a;
}

} // namespace vantrel::test
