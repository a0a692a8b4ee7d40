#include "formats/tdf.h"

#include "base/text.h"

namespace vantrel {

const TdfEntry* TdfSection::Find(std::string_view key) const {
    for (const TdfEntry& e : entries)
        if (EqualsNoCase(e.key, key)) return &e;
    return nullptr;
}

std::string TdfSection::Value(std::string_view key) const {
    const TdfEntry* e = Find(key);
    return e ? std::string(e->value) : std::string();
}

const TdfSection* TdfSection::FindSection(std::string_view sectionName) const {
    for (const TdfSection& s : sections)
        if (EqualsNoCase(s.name, sectionName)) return &s;
    return nullptr;
}

namespace {

class TdfParser {
  public:
    explicit TdfParser(std::string_view text) : t_(text) {}

    TdfDocument Run() {
        Body(doc_.root, 0, true);
        if (dropped_ > 0)
            doc_.problems.push_back("... and " + std::to_string(dropped_) + " more problems");
        return std::move(doc_);
    }

  private:
    bool AtComment() const {
        return p_ + 1 < t_.size() && t_[p_] == '/' && (t_[p_ + 1] == '/' || t_[p_ + 1] == '*');
    }

    void SkipBlanksAndComments() {
        while (p_ < t_.size()) {
            if (IsBlankChar(t_[p_])) {
                ++p_;
            } else if (AtComment() && t_[p_ + 1] == '/') {
                const std::size_t end = t_.find('\n', p_);
                p_ = end == std::string_view::npos ? t_.size() : end + 1;
            } else if (AtComment()) {
                const std::size_t end = t_.find("*/", p_ + 2);
                if (end == std::string_view::npos) {
                    Problem(p_, "a comment is not closed");
                    p_ = t_.size();
                } else {
                    p_ = end + 2;
                }
            } else {
                return;
            }
        }
    }

    // The entries and sections up to the '}' that closes `section` (the
    // top level: up to the end of the text).
    void Body(TdfSection& section, int depth, bool top) {
        const std::size_t opened = p_;
        for (;;) {
            SkipBlanksAndComments();
            if (p_ >= t_.size()) {
                if (!top) Problem(opened, "[" + std::string(section.name.substr(0, 100)) + "] is not closed");
                return;
            }
            const char c = t_[p_];
            if (c == '}') {
                ++p_;
                if (!top) return;
                Problem(p_ - 1, "'}' closes no section: ignored");
            } else if (c == '[') {
                Section(section, depth);
            } else if (c == '{') {
                Problem(p_, "'{' without a section name: read as a section without a name");
                ++p_;
                Open(section, {}, depth);
            } else if (c == ';') {
                ++p_;
            } else {
                Entry(section);
            }
        }
    }

    void Section(TdfSection& parent, int depth) {
        const std::size_t start = p_++;
        std::size_t end = p_;
        while (end < t_.size() && t_[end] != ']' && t_[end] != '\n')
            ++end;
        const std::string_view name = Trimmed(p_, end);
        if (end < t_.size() && t_[end] == ']') {
            p_ = end + 1;
        } else {
            Problem(start, "the section name '" + std::string(name.substr(0, 100)) + "' has no ']'");
            p_ = end;
        }
        SkipBlanksAndComments();
        if (p_ < t_.size() && t_[p_] == '{') {
            ++p_;
            Open(parent, name, depth);
        } else {
            Problem(start, "[" + std::string(name.substr(0, 100)) + "] has no '{': read as empty");
            parent.sections.push_back(TdfSection{name, {}, {}});
        }
    }

    // Reads the body of a section whose '{' was just passed.
    void Open(TdfSection& parent, std::string_view name, int depth) {
        if (depth + 1 > TdfMaxDepth) {
            Problem(p_, "sections nested deeper than " + std::to_string(TdfMaxDepth) +
                            " levels: skipped");
            SkipBlock();
            return;
        }
        parent.sections.push_back(TdfSection{name, {}, {}});
        Body(parent.sections.back(), depth + 1, false);
    }

    // Passes the rest of a block whose '{' was just passed, nested blocks included.
    void SkipBlock() {
        int open = 1;
        while (open > 0) {
            SkipBlanksAndComments();
            if (p_ >= t_.size()) return;
            if (t_[p_] == '{') ++open;
            if (t_[p_] == '}') --open;
            ++p_;
        }
    }

    void Entry(TdfSection& section) {
        const std::size_t start = p_;
        std::size_t q = p_;
        // A key ends at '='; anything else that ends a statement first makes junk.
        auto endsKey = [this](std::size_t i) {
            const char c = t_[i];
            return c == '=' || c == '{' || c == '}' || c == '[' || c == ';' || c == '\n' ||
                   (c == '/' && i + 1 < t_.size() && (t_[i + 1] == '/' || t_[i + 1] == '*'));
        };
        while (q < t_.size() && !endsKey(q))
            ++q;
        if (q >= t_.size() || t_[q] != '=') {
            Problem(start, "'" + std::string(Trimmed(start, q).substr(0, 100)) +
                               "' is not key=value: skipped");
            p_ = q;
            if (p_ < t_.size() && (t_[p_] == ';' || t_[p_] == '\n')) ++p_;
            return;
        }
        TdfEntry entry;
        entry.key = Trimmed(start, q);
        std::size_t end = q + 1;
        while (end < t_.size() && t_[end] != ';' && t_[end] != '\n' && t_[end] != '\r')
            ++end;
        entry.value = Trimmed(q + 1, end);
        if (end < t_.size() && t_[end] == ';') {
            p_ = end + 1;
        } else {
            Problem(start, "the value of '" + std::string(entry.key.substr(0, 100)) +
                               "' has no ';'");
            p_ = end;
        }
        section.entries.push_back(std::move(entry));
    }

    std::string_view Trimmed(std::size_t b, std::size_t e) const {
        while (b < e && IsBlankChar(t_[b]))
            ++b;
        while (e > b && IsBlankChar(t_[e - 1]))
            --e;
        return t_.substr(b, e - b);
    }

    // Problems come in text order but for a section that is not closed,
    // whose line is counted back from where it opened.
    std::size_t LineOf(std::size_t pos) {
        if (pos < counted_) {
            std::size_t line = 1;
            for (std::size_t i = 0; i < pos; ++i)
                line += t_[i] == '\n';
            return line;
        }
        for (; counted_ < pos && counted_ < t_.size(); ++counted_)
            line_ += t_[counted_] == '\n';
        return line_;
    }

    void Problem(std::size_t pos, std::string what) {
        if (doc_.problems.size() >= TdfMaxProblems) {
            ++dropped_;
            return;
        }
        if (what.size() > 120) what = what.substr(0, 100) + "...";
        doc_.problems.push_back("line " + std::to_string(LineOf(pos)) + ": " + what);
    }

    std::string_view t_;
    std::size_t p_ = 0;
    TdfDocument doc_;
    std::size_t counted_ = 0, line_ = 1, dropped_ = 0;
};

} // namespace

TdfDocument ReadTdf(std::string_view text) {
    return TdfParser(text).Run();
}

} // namespace vantrel
