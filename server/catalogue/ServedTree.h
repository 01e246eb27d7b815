#pragma once

#include <string>
#include <vector>

namespace velmorant {

struct PublishRequest {
    std::string release; ///< a program folder as it is installed
    std::string served;  ///< the folder whose "update/" the web server serves
    std::string mainVersion;
    std::string mainProgram;
    std::string privatePem; ///< signs the catalogue; empty: unsigned
};

struct PublishReport {
    std::size_t files = 0;    ///< named by the catalogue
    std::size_t newFiles = 0; ///< contents that the served tree did not have
};

/// Copies a release into a served tree and makes "update/remote.rar", with its signature when there
/// is a key. The previous catalogue is the one that the tree serves. Every file is whole at every
/// moment, and the catalogue comes last: clients may ask meanwhile.
///
/// Of the release folder "update/", "config.mp4" and "flow.xml" are left out: running the program
/// there has made them. Throws StepError.
PublishReport publishRelease(const PublishRequest& request);

/// What is wrong with a served tree, one line each; nothing when clients can use it. With a public
/// key its catalogue must be signed.
std::vector<std::string> checkServedTree(const std::string& served, const std::string& publicKey);

} // namespace velmorant
