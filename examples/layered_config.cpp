// Builds a configuration from two layers: a user's settings over the defaults. Finds nested
// settings by path and reports misspelt ones. Queries a copy without secrets, so that messages
// cannot show them.

#include "vxattribute/vxattribute.h"
#include "vxcore/error_info.h"

#include <array>
#include <iostream>

using namespace vxattribute;

int main() {
    AttributeMap const defaults = make_map(
        {{"host", "localhost"}, {"limits", make_map({{"rate", 10}, {"connections", 64}})}});
    AttributeMap const fromUser = make_map(
        {{"hots", "example.org"}, {"limits", make_map({{"rate", 50}})}, {"password", "hunter2"}});

    AttributeMap const config = merged_deep(fromUser, defaults);
    std::cout << "rate " << find_path(config, "limits/rate")->get<long long>() << ", connections "
              << find_path(config, "limits/connections")->get<long long>() << '\n';

    std::array const queries{Query("host").required(true).scalar(true),
                             Query("limits").scalar(true), Query("password", 2, 4)};
    for (AttributeName const & name : unknown_names(config, queries)) {
        std::cout << "nothing asks for " << name << '\n';
    }

    // Given a place for the failure, execute() does not raise it.
    std::array const secrets{AttributeName("password")};
    vxcore::ErrorInfo::Ptr error;
    queries[2].execute(redacted(config, secrets), &error);
    if (error) {
        std::cout << "bad setting: " << Query::bad_attribute_name(error) << '\n';
        std::cout << "the message holds the secret: "
                  << (error->text().find("hunter2") == std::string::npos ? "no" : "yes") << '\n';
    }
}
