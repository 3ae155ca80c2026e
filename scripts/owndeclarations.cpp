// A plug-in of clang-tidy: the checks walk through our own declarations only.
//
// clang-tidy 14 walks through every declaration of every system header and then
// throws away what it found there. With Qt's headers that is two thirds of its time.

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

namespace {

class OwnDeclarations : public clang::ASTConsumer {
public:
    void HandleTranslationUnit(clang::ASTContext& context) override {
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
            const clang::SourceLocation place = declaration->getLocation();
            if (place.isValid() && !context.getSourceManager().isInSystemHeader(place))
                own.push_back(declaration);
        }
        context.setTraversalScope(own);
    }
};

// Runs before clang-tidy's own consumer, for every source.
class LimitToOwnDeclarations : public clang::PluginASTAction {
protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<OwnDeclarations>();
    }

    bool ParseArgs(const clang::CompilerInstance&, const std::vector<std::string>&) override {
        return true;
    }

    ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<LimitToOwnDeclarations>
    Registered("own-declarations", "no check looks at a system header");

} // namespace
