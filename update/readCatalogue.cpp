#include "update/readCatalogue.h"

#include "common/StepError.h"
#include "update/Catalogue.h"
#include "update/catalogueSignature.h"
#include "update/updateFiles.h"

namespace velmorant {

std::string readRemoteCatalogue(const ProgramTree& tree, const std::string& publicKey) {
    std::string bytes = tree.readFile(remoteCatalogue(), Catalogue::largestFile).value_or("");
    if (publicKey.empty())
        return bytes;
    const std::string signature = tree.readFile(remoteSignature(), largestSignature).value_or("");
    if (checkSignature(publicKey, bytes, signature) != SignatureVerdict::Valid)
        throw StepError("the server's catalogue is not signed by the maker of this program");
    return bytes;
}

} // namespace velmorant
