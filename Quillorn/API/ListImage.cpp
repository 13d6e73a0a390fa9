#include "API/ListImage.h"

namespace quillorn {

HttpResponse imageResponse(std::shared_ptr<const ListImage> image, std::vector<std::string> moving) {
    return jsonBodyResponse([image = std::move(image), moving = std::move(moving)](HttpResponseBodyWriter& body) {
        const std::string_view text = image->text;
        std::size_t at = 0;
        for (std::size_t i = 0; i < moving.size(); ++i) {
            body.write(text.substr(at, image->moving[i].begin - at));
            body.write(moving[i]);
            at = image->moving[i].end;
        }
        body.write(text.substr(at));
    });
}

} // namespace quillorn
