#include "render/ShaderProgram.h"

#include <spdlog/spdlog.h>

#include <array>
#include <string>

namespace VX
{

namespace
{

constexpr std::string_view versionLine = "#version 330 core\n";

GLuint compile(GLenum kind, std::string_view defines, std::string_view source)
{
    const std::array<std::string_view, 3> parts{versionLine, defines, source};
    std::array<const GLchar*, 3> texts{};
    std::array<GLint, 3> lengths{};
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        texts[i] = parts[i].data();
        lengths[i] = static_cast<GLint>(parts[i].size());
    }
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, static_cast<GLsizei>(parts.size()), texts.data(), lengths.data());
    glCompileShader(shader);
    return shader;
}

} // namespace

ShaderProgram::ShaderProgram(std::string_view defines, std::string_view vertexSource, std::string_view fragmentSource)
    : program_(Gl::Program::create())
{
    const std::array shaders{compile(GL_VERTEX_SHADER, defines, vertexSource),
                             compile(GL_FRAGMENT_SHADER, defines, fragmentSource)};
    for (const GLuint shader : shaders)
        glAttachShader(program_.name(), shader);
    glLinkProgram(program_.name());
    GLint linked = GL_FALSE;
    glGetProgramiv(program_.name(), GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE)
    {
        std::string text(2000, '\0');
        GLsizei length = 0;
        glGetProgramInfoLog(program_.name(), static_cast<GLsizei>(text.size()), &length, text.data());
        text.resize(static_cast<std::size_t>(length));
        for (const GLuint shader : shaders)
        {
            std::string details(2000, '\0');
            glGetShaderInfoLog(shader, static_cast<GLsizei>(details.size()), &length, details.data());
            text.append(details, 0, static_cast<std::size_t>(length));
        }
        spdlog::error("A shader cannot be used with this graphics driver: {}", text);
    }
    for (const GLuint shader : shaders)
        glDeleteShader(shader);
}

} // namespace VX
