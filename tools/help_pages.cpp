// Turns the user guide (Markdown) into the sources of the help file: one HTML page for each
// heading, the table of contents (toc.hhc), the index (index.hhk), the pictures the pages show
// and the project (help.hhp) that chmcmd compiles.
//   help_pages <guide.md> <output folder> <help file name>
// Index terms come from the page titles and from comments in the guide of the form
// <!-- trefwoorden: term; term -->, which no Markdown viewer shows.
#include <md4c-html.h>

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Page {
    int level = 1;
    std::string title;
    std::string file;
    std::string markdown;
    std::vector<std::string> terms;
};

std::string trim(const std::string& text) {
    size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return {};
    size_t last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

// Letters and digits of the title, lower case, the rest as single dashes.
std::string fileNameOf(const std::string& title, std::set<std::string>& taken) {
    std::string name;
    for (unsigned char c : title) {
        if (std::isalnum(c) && c < 0x80)
            name += static_cast<char>(std::tolower(c));
        else if (!name.empty() && name.back() != '-')
            name += '-';
    }
    while (!name.empty() && name.back() == '-')
        name.pop_back();
    if (name.empty())
        name = "pagina";
    std::string unique = name;
    for (int n = 2; taken.count(unique); ++n)
        unique = name + "-" + std::to_string(n);
    taken.insert(unique);
    return unique + ".html";
}

// Markup-safe text; beyond ASCII as character references, so the sitemaps read alike whatever
// code page a reader assumes.
std::string escaped(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char c = text[i];
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else if (c < 0x80)
            out += static_cast<char>(c);
        else {
            int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
            unsigned code = c & (0x3F >> extra);
            for (int k = 0; k < extra && i + 1 < text.size(); ++k)
                code = (code << 6) | (static_cast<unsigned char>(text[++i]) & 0x3F);
            out += "&#" + std::to_string(code) + ";";
        }
    }
    return out;
}

// Heading text without Markdown emphasis marks.
std::string plainTitle(const std::string& heading) {
    std::string out;
    for (char c : heading)
        if (c != '*' && c != '`')
            out += c;
    return trim(out);
}

std::vector<Page> splitIntoPages(std::istream& guide) {
    std::vector<Page> pages;
    std::set<std::string> taken;
    std::string line;
    bool inFence = false;
    const std::string termsMark = "<!-- trefwoorden:";
    while (std::getline(guide, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.rfind("```", 0) == 0)
            inFence = !inFence;
        size_t hashes = line.find_first_not_of('#');
        bool heading =
            !inFence && hashes >= 1 && hashes <= 3 && hashes < line.size() && line[hashes] == ' ';
        if (heading) {
            Page page;
            page.level = static_cast<int>(hashes);
            page.title = plainTitle(line.substr(hashes + 1));
            page.file = pages.empty() ? "index.html" : fileNameOf(page.title, taken);
            pages.push_back(page);
        } else if (pages.empty()) {
            continue;
        }
        if (!inFence && line.rfind(termsMark, 0) == 0) {
            std::string list = line.substr(termsMark.size());
            list = list.substr(0, list.find("-->"));
            std::stringstream terms(list);
            std::string term;
            while (std::getline(terms, term, ';'))
                if (!trim(term).empty())
                    pages.back().terms.push_back(trim(term));
            continue;
        }
        pages.back().markdown += line + "\n";
    }
    return pages;
}

void append(const MD_CHAR* text, MD_SIZE size, void* out) {
    static_cast<std::string*>(out)->append(text, size);
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string htmlOf(const Page& page) {
    std::string body;
    if (md_html(page.markdown.data(), static_cast<MD_SIZE>(page.markdown.size()), append, &body,
                MD_DIALECT_GITHUB, 0) != 0)
        throw std::runtime_error("the Markdown of '" + page.title + "' cannot be read");
    // Lines between the cells, as a plain help viewer draws none of its own.
    body = replaceAll(body, "<table>", "<table border=\"1\" cellspacing=\"0\" cellpadding=\"4\">");
    return "<!DOCTYPE html>\n<html lang=\"nl\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
           escaped(page.title) + "</title>\n</head>\n<body>\n" + body + "</body>\n</html>\n";
}

std::vector<std::string> picturesOf(const std::string& markdown) {
    std::vector<std::string> pictures;
    for (size_t at = markdown.find("]("); at != std::string::npos;
         at = markdown.find("](", at + 2)) {
        if (markdown.rfind("![", at) == std::string::npos)
            continue;
        size_t end = markdown.find(')', at);
        std::string target = markdown.substr(at + 2, end - at - 2);
        if (target.find("://") == std::string::npos && fs::path(target).extension() == ".png")
            pictures.push_back(target);
    }
    return pictures;
}

std::string sitemapEntry(const std::string& name, const std::string& local) {
    return "<LI><OBJECT type=\"text/sitemap\">\n<param name=\"Name\" value=\"" + escaped(name) +
           "\">\n<param name=\"Local\" value=\"" + local + "\">\n</OBJECT>\n";
}

const char* kSitemapHead = "<!DOCTYPE HTML PUBLIC \"-//IETF//DTD HTML//EN\">\n<HTML>\n<HEAD>\n"
                           "<meta charset=\"utf-8\">\n</HEAD>\n<BODY>\n";

std::string contentsOf(const std::vector<Page>& pages) {
    std::string out = kSitemapHead;
    int depth = 0;
    for (const Page& page : pages) {
        for (; depth < page.level; ++depth)
            out += "<UL>\n";
        for (; depth > page.level; --depth)
            out += "</UL>\n";
        out += sitemapEntry(page.title, page.file);
    }
    for (; depth > 0; --depth)
        out += "</UL>\n";
    return out + "</BODY>\n</HTML>\n";
}

std::string indexOf(const std::vector<Page>& pages) {
    auto key = [](std::string term) {
        for (char& c : term)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return term;
    };
    std::map<std::string, std::pair<std::string, std::string>> sorted;
    for (const Page& page : pages) {
        sorted.emplace(key(page.title) + "\n" + page.file, std::pair{page.title, page.file});
        for (const std::string& term : page.terms)
            sorted.emplace(key(term) + "\n" + page.file, std::pair{term, page.file});
    }
    std::string out = std::string(kSitemapHead) + "<UL>\n";
    for (const auto& [_, entry] : sorted)
        out += sitemapEntry(entry.first, entry.second);
    return out + "</UL>\n</BODY>\n</HTML>\n";
}

void write(const fs::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: help_pages <guide.md> <output folder> <help file name>\n");
        return 2;
    }
    try {
        fs::path guidePath = argv[1];
        fs::path out = argv[2];
        std::ifstream guide(guidePath, std::ios::binary);
        if (!guide)
            throw std::runtime_error("cannot read " + guidePath.string());
        std::vector<Page> pages = splitIntoPages(guide);
        if (pages.empty() || pages.front().level != 1)
            throw std::runtime_error(guidePath.string() + " does not begin with a # heading");

        fs::remove_all(out);
        fs::create_directories(out);
        std::vector<std::string> files;
        std::set<std::string> pictures;
        for (const Page& page : pages) {
            write(out / page.file, htmlOf(page));
            files.push_back(page.file);
            for (const std::string& picture : picturesOf(page.markdown))
                pictures.insert(picture);
        }
        for (const std::string& picture : pictures) {
            fs::create_directories((out / picture).parent_path());
            fs::copy_file(guidePath.parent_path() / picture, out / picture);
            files.push_back(picture);
        }
        write(out / "toc.hhc", contentsOf(pages));
        write(out / "index.hhk", indexOf(pages));

        std::string project =
            "[OPTIONS]\nCompatibility=1.1 or later\nCompiled file=" + std::string(argv[3]) +
            "\nContents file=toc.hhc\nIndex file=index.hhk\n"
            "Default topic=index.html\nDisplay compile progress=No\n"
            "Language=0x413 Dutch (Netherlands)\nTitle=" +
            pages.front().title + "\n\n[FILES]\n";
        for (const std::string& file : files)
            project += file + "\n";
        write(out / "help.hhp", project);
        std::printf("help_pages: %zu pages, %zu pictures\n", pages.size(), pictures.size());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "help_pages: %s\n", e.what());
        return 1;
    }
    return 0;
}
