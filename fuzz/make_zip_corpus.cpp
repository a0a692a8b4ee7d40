// Writes the seed corpus of fuzz/unzip_fuzz.cpp with libzip: small packages
// with the shapes the unzip object meets (folders, stored and deflated
// entries, odd names, an empty package).
//   g++ -std=c++20 fuzz/make_zip_corpus.cpp -lzip -o /tmp/make_zip_corpus &&
//       /tmp/make_zip_corpus fuzz/corpus/unzip
#include <zip.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

struct Item {
    std::string name;
    std::string data;
    bool folder = false;
    bool store = false;
};

bool Write(const std::string& path, const std::vector<Item>& items) {
    std::remove(path.c_str());
    int error = 0;
    zip_t* za = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!za) return false;
    for (const Item& it : items) {
        if (it.folder) {
            if (zip_dir_add(za, it.name.c_str(), ZIP_FL_ENC_RAW) < 0) return false;
            continue;
        }
        zip_source_t* src = zip_source_buffer(za, it.data.data(), it.data.size(), 0);
        const zip_int64_t index = zip_file_add(za, it.name.c_str(), src, ZIP_FL_ENC_RAW);
        if (index < 0) return false;
        zip_set_file_compression(za, static_cast<zip_uint64_t>(index),
                                 it.store ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
    }
    return zip_close(za) == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string d = argv[1];
    const std::string fbi = "[UNITINFO]\r\n{\r\nUnitName=ARMFOO;\r\nSide=ARM;\r\nName=Foo;\r\n}\r\n";
    bool ok = true;
    ok &= Write(d + "/units-and-pics.zip", {{"units/", "", true},
                                            {"units/armfoo.fbi", fbi},
                                            {"unitpics/", "", true},
                                            {"unitpics/ARMFOO.PCX", std::string(64, 'p'), false, true}});
    ok &= Write(d + "/flat-stored.zip", {{"CORBAR.FBI", fbi, false, true}, {"readme.txt", "hello"}});
    ok &= Write(d + "/odd-names.zip", {{"../up.fbi", "x"},
                                       {"a\\b\\c.fbi", "y"},
                                       {"./", "", true},
                                       {"deep/er/still/x.pcx", "z"},
                                       {"same.fbi", "1"},
                                       {"SAME.FBI", "2"}});
    ok &= Write(d + "/repeats.zip", {{"big.fbi", std::string(4000, 'a')}});
    ok &= Write(d + "/empty.zip", {{"only-a-folder/", "", true}});
    return ok ? 0 : 1;
}
