#include "StepReader.h"

#include "LibraryCall.h"

#include <STEPControl_Reader.hxx>
#include <StepData_StepModel.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSAlgo.hxx>
#include <XSAlgo_AlgoContainer.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include <istream>
#include <streambuf>

namespace VX
{

namespace
{

/// Reads from a text without a copy of it.
class TextBuffer : public std::streambuf
{
public:
    explicit TextBuffer(std::string& text) { setg(text.data(), text.data(), text.data() + text.size()); }
};

/// Takes the place of the library's healing after each translation, which takes ten times as long as the translation
/// itself and uses one core: it leaves the shape as it is and keeps what healing needs to know.
class PostponedHealing : public XSAlgo_AlgoContainer
{
public:
    PostponedHealing() { SetToolContainer(XSAlgo::AlgoContainer()->ToolContainer()); }

    // NOLINTNEXTLINE(readability-function-size): the library calls it so.
    TopoDS_Shape ProcessShape(const TopoDS_Shape& shape, const Standard_Real precision,
                              const Standard_Real maxTolerance, const Standard_CString /*resource*/,
                              const Standard_CString /*sequence*/, Handle(Standard_Transient) & /*info*/,
                              const Message_ProgressRange& /*progress*/,
                              const Standard_Boolean /*nonManifold*/) const override
    {
        last_ = {shape, precision, maxTolerance};
        return shape;
    }

    [[nodiscard]] const StepShape& last() const { return last_; }

    void forget() { last_ = {}; }

private:
    mutable StepShape last_;
};

} // namespace

struct StepReader::Session
{
    STEPControl_Reader reader;
    opencascade::handle<PostponedHealing> healing;
    std::vector<Handle(Standard_Transient)> entities; ///< by number in the excerpt

    void listEntities(std::size_t size)
    {
        const Handle(StepData_StepModel) model = reader.StepModel();
        entities.resize(size + 1);
        for (int index = 1; index <= model->NbEntities(); ++index)
        {
            const Handle(Standard_Transient) entity = model->Value(index);
            const auto number = static_cast<std::size_t>(model->IdentLabel(entity));
            if (number < entities.size())
                entities[number] = entity;
        }
    }

    [[nodiscard]] Handle(Standard_Transient) entity(int number) const
    {
        const auto index = static_cast<std::size_t>(number);
        return index < entities.size() ? entities[index] : Handle(Standard_Transient)();
    }
};

StepReader::StepReader()
    : session_(std::make_unique<Session>())
{
    session_->healing = new PostponedHealing;
    XSAlgo::SetAlgoContainer(session_->healing);
}

StepReader::~StepReader() = default;

tl::expected<void, std::string> StepReader::read(const StepExcerpt& excerpt)
{
    std::string text = excerpt.text;
    TextBuffer buffer(text);
    std::istream stream(&buffer);
    bool isRead = false;
    callLibrary(
        [&]
        {
            isRead = session_->reader.ReadStream("excerpt", stream) == IFSelect_RetDone;
            if (isRead)
                session_->listEntities(static_cast<std::size_t>(excerpt.size));
        });
    if (!isRead)
        return tl::unexpected<std::string>("The STEP file is damaged: its geometry cannot be read.");
    return {};
}

StepShape StepReader::translate(const StepExcerpt::Item& item)
{
    const Handle(Standard_Transient) representation = session_->entity(item.representation);
    if (representation.IsNull())
        return {};
    session_->healing->forget();
    callLibrary([&] { session_->reader.TransferEntity(representation); });
    StepShape result = session_->healing->last();
    result.shape = find(item.item);
    return result;
}

TopoDS_Shape StepReader::find(int number) const
{
    const Handle(Standard_Transient) entity = session_->entity(number);
    if (entity.IsNull())
        return {};
    return TransferBRep::ShapeResult(session_->reader.WS()->TransferReader()->TransientProcess(), entity);
}

} // namespace VX
