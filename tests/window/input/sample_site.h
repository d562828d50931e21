// The sample site, with settings of its first two headings that tell accounts and report types apart.
#pragma once

#include "support/test_folder.h"
#include "window/input/person.h"

#include <gtest/gtest.h>

namespace input_tests
{

class Editor : public testing::Test
{
protected:
    Editor()
    {
        site.Run(support::ReadFile(support::SourcePath("embedded/database/sample.sql")));
        // ABDOMEN and ABDOMEN AND PELVIS, for the first account: Impression; Physician's Choice, but Indented List for
        // chest X-rays.
        site.Run("DELETE FROM Report_header_settings WHERE heading_id = 86 OR heading_id = 87\n"
                 "INSERT INTO Report_header_settings VALUES (86, 101, 0, 16, 0)\n"
                 "INSERT INTO Report_header_settings VALUES (87, 101, 0, 17, 0)\n"
                 "INSERT INTO Report_header_settings VALUES (87, 101, 10, 18, 0)\n");
    }

    // `act` at the editor, which is opened on the site.
    void At(const std::function<void(Person &)> &act) { AtTheEditor(site, act); }

    support::TestDatabase site;
};

} // namespace input_tests
