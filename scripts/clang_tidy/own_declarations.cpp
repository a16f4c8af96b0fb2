/// A plugin of clang-tidy 14 that spares it the declarations of other people's headers: walking through Qt,
/// GoogleTest and the standard library with every check took three quarters of the time, and what is found
/// there is never shown. Later versions of clang-tidy do this themselves. The analyzer chooses what it
/// follows on its own and is not touched.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class OwnDeclarations : public clang::ASTConsumer {
public:
    /// Comes before the checks, which then see these declarations and what is in them.
    void HandleTranslationUnit(clang::ASTContext& context) override {
        const clang::SourceManager& sources = context.getSourceManager();
        std::vector<clang::Decl*> own;
        for (clang::Decl* const declaration : context.getTranslationUnitDecl()->decls()) {
            const clang::SourceLocation place = sources.getExpansionLoc(declaration->getLocation());
            if (place.isValid() && !sources.isInSystemHeader(place)) {
                own.push_back(declaration);
            }
        }
        context.setTraversalScope(own);
    }
};

class OwnDeclarationsAction : public clang::PluginASTAction {
protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& /*compiler*/,
                                                          llvm::StringRef /*file*/) override {
        return std::make_unique<OwnDeclarations>();
    }

    bool ParseArgs(const clang::CompilerInstance& /*compiler*/,
                   const std::vector<std::string>& /*arguments*/) override {
        return true;
    }

    ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<OwnDeclarationsAction>
    registration("own-declarations", "Checks look at declarations of ours alone");

} // namespace
