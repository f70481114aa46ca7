// Canonical paths against the current group of the file in use.
#include <string.h>

#include "OrmakTest.h"

using CanonicalPath = OrmakTest;

static std::string canonical(const char *name) {
    char result[1024];
    return ormak_get_canonical_path(name, result);
}

TEST_F(CanonicalPath, RelativeNamesStartAtTheCurrentGroup) {
    ASSERT_EQ(run("CREATE FILE a.h5"), 0);
    hid_t file = H5Fopen("a.h5", H5F_ACC_RDWR, H5P_DEFAULT);
    H5Gclose(H5Gcreate2(file, "a", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Gclose(H5Gcreate2(file, "a/b", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Fclose(file);
    ASSERT_EQ(run("USE FILE a.h5; USE GROUP a/b"), 0) << message();

    const std::pair<const char *, const char *> table[] = {
        {"c", "/a/b/c"}, {"../c", "/a/c"},       {"../../../c", "/c"},  {"///c/", "/c"}, {"", "/a/b"},
        {"./", "/a/b"},  {"c//d/", "/a/b/c/d"}, {"c/../d", "/a/b/d"}, {".c", "/a/b/.c"}, {"...", "/a/b/..."},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.first);
        EXPECT_EQ(canonical(row.first), row.second);
    }
    int size = 0;
    EXPECT_STREQ(_ormak_get_canonical_path_with_size("../x", &size), "/a/x");
    EXPECT_EQ(size, 4);
}

TEST_F(CanonicalPath, WithoutAFileNamesCountFromTheRoot) {
    for (const char *name : {"", ".."}) EXPECT_EQ(canonical(name), "/");
    EXPECT_EQ(canonical("a/b"), "/a/b");
    // Without a buffer the name is left alone.
    const char *name = "x//y/./z";
    EXPECT_EQ(ormak_get_canonical_path(name, nullptr), name);
}

TEST_F(CanonicalPath, OverlongPathsStayInsideTheBuffer) {
    std::string deep;
    for (int i = 0; i < 40; i++) deep += "/c" + std::to_string(i);
    std::string result = canonical(deep.c_str());
    EXPECT_EQ(result.rfind("/c31"), result.size() - 4);
    std::string many;
    for (int i = 0; i < 30; i++) many += "/" + std::string(100, 'a' + i % 26);
    EXPECT_LT(canonical(many.c_str()).size(), 1024u);
}
