#include "support/map_fixtures.h"

namespace vantrel::test {

std::string MapOta(const std::string& mission, const std::vector<std::string>& schemas) {
    std::string text = "[GlobalHeader]\r\n\t{\r\n\tmissionname=" + mission +
                       ";\r\n\tmissiondescription=" + mission + " by the sea;\r\n"
                       "\tnumplayers=2, 4;\r\n\tSCHEMACOUNT=" + std::to_string(schemas.size()) +
                       ";\r\n";
    for (std::size_t i = 0; i < schemas.size(); ++i) {
        const std::size_t colon = schemas[i].find(':');
        text += "\t[Schema " + std::to_string(i) + "]\r\n\t\t{\r\n\t\tType=" +
                schemas[i].substr(0, colon) + ";\r\n";
        if (colon != std::string::npos)
            text += "\t\taiprofile=" + schemas[i].substr(colon + 1) + ";\r\n";
        text += "\t\tSurfaceMetal=3;\r\n\t\t[specials]\r\n\t\t\t{\r\n\t\t\t}\r\n\t\t}\r\n";
    }
    return text + "\t}\r\n";
}

} // namespace vantrel::test
