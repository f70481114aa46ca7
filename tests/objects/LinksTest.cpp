// CREATE LINK and CREATE EXTERNAL LINK, checked on disk through HDF5.
#include <string.h>

#include "OrmakPrivateStructures.h"
#include "OrmakTest.h"

class Links : public OrmakTest {
protected:
    void SetUp() override {
        OrmakTest::SetUp();
        ASSERT_EQ(run("CREATE FILE a.h5, b.h5; USE FILE a.h5; CREATE GROUP g/h"), 0);
    }

    /* The link's type and its value as text: a soft link's target, an external link's
       "file object". */
    static std::string link(const char *file_name, const char *path, H5L_type_t expected) {
        hid_t file = H5Fopen(file_name, H5F_ACC_RDONLY, H5P_DEFAULT);
        std::string result = "missing";
        H5L_info_t info;
        if (H5Lget_info(file, path, &info, H5P_DEFAULT) >= 0) {
            if (info.type != expected) {
                result = "other type";
            } else if (info.type == H5L_TYPE_HARD) {
                result = "hard";
            } else {
                std::string buffer(info.u.val_size, '\0');
                H5Lget_val(file, path, &buffer[0], buffer.size(), H5P_DEFAULT);
                if (info.type == H5L_TYPE_SOFT) {
                    result = buffer.c_str();
                } else {
                    const char *target_file = nullptr, *target_object = nullptr;
                    unsigned flags;
                    H5Lunpack_elink_val(&buffer[0], buffer.size(), &flags, &target_file, &target_object);
                    result = std::string(target_file) + " " + target_object;
                }
            }
        }
        H5Fclose(file);
        return result;
    }
};

TEST_F(Links, SoftLinksAreStoredAsWrittenAndMayDangle) {
    ASSERT_EQ(run("USE GROUP g; CREATE LINK l, b.h5 m TO h, ../x; CREATE SOFT LINK s TO /nowhere"), 0) << message();
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(link("a.h5", "/g/l", H5L_TYPE_SOFT), "h");
    EXPECT_EQ(link("b.h5", "/m", H5L_TYPE_SOFT), "../x");
    EXPECT_EQ(run("USE GROUP s"), ORMAK_ERROR_DANGLING_LINK);
    EXPECT_EQ(message(), "Error when opening object \"s\" as it is a dangling link");
    EXPECT_EQ(run("USE GROUP l"), 0);
}

TEST_F(Links, HardLinksNeedTheirObject) {
    EXPECT_EQ(run("CREATE HARD LINK k TO g/h"), 0);
    EXPECT_EQ(run("CREATE HARD LINK j TO g/missing"), ORMAK_ERROR_NOT_FOUND);
    EXPECT_EQ(message(), "Error when creating hard link \"j\" as object \"g/missing\" does not exist");
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(link("a.h5", "/k", H5L_TYPE_HARD), "hard");
}

TEST_F(Links, FailuresOfTheList) {
    // No parent is made for a link.
    EXPECT_EQ(run("CREATE LINK nogroup/l TO g"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating soft link \"nogroup/l\"");
    EXPECT_EQ(run("CREATE LINK one, two TO g"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating soft link \"two\" as it does not have a corresponding object to link to specified");
    EXPECT_EQ(run("CREATE LINK one TO g"), ORMAK_ERROR_ALREADY_EXISTS);
    EXPECT_EQ(run("CREATE TRUNCATE HARD LINK one TO g/h"), 0);
    EXPECT_EQ(run("CREATE LINK x TO g/"), ORMAK_ERROR_UNKNOWN);
    EXPECT_EQ(message(), "Error when creating soft link \"x\" as object \"g/\" should not end with \"/\"");
    ASSERT_EQ(run("CLOSE ALL FILE"), 0);
    EXPECT_EQ(link("a.h5", "/one", H5L_TYPE_HARD), "hard");
}

TEST_F(Links, ExternalLinksAndThePrefix) {
    ASSERT_EQ(run("CREATE DIRECTORY sub; CREATE FILE sub/target.h5"), 0);
    ASSERT_EQ(run("CREATE GROUP sub/target.h5 x"), 0);
    EXPECT_EQ(run("CREATE EXTERNAL LINK root, e TO target.h5 /, target.h5 /x"), 0) << message();
    ASSERT_EQ(run("FLUSH"), 0);
    EXPECT_EQ(link("a.h5", "/e", H5L_TYPE_EXTERNAL), "target.h5 /x");
    EXPECT_EQ(link("a.h5", "/root", H5L_TYPE_EXTERNAL), "target.h5 /");

    // The target file is found only through the prefix.
    EXPECT_NE(run("USE GROUP e"), 0);
    EXPECT_EQ(run("SET EXTERNAL LINK PREFIX \"sub/\"; USE GROUP e"), 0) << message();
    EXPECT_EQ(run("CLOSE GROUP; SET EXTERNAL LINK PREFIX"), 0);
}
