#pragma once

#include "render/GlObjects.h"

#include <Eigen/Core>

#include <string_view>

namespace VX
{

/// A linked OpenGL program. Uniform names are looked up in the program; one that it does not use is ignored.
class ShaderProgram
{
public:
    /// Compiles and links; a failure is logged, and the program then draws nothing.
    /// @param defines  lines put in front of both sources
    ShaderProgram(std::string_view defines, std::string_view vertexSource, std::string_view fragmentSource);

    void use() const { glUseProgram(program_.name()); }

    [[nodiscard]] GLint location(const char* uniform) const { return glGetUniformLocation(program_.name(), uniform); }

    static void set(GLint location, float value) { glUniform1f(location, value); }

    static void set(GLint location, int value) { glUniform1i(location, value); }

    static void set(GLint location, const Eigen::Vector2f& value) { glUniform2fv(location, 1, value.data()); }

    static void set(GLint location, const Eigen::Vector3f& value) { glUniform3fv(location, 1, value.data()); }

    static void set(GLint location, const Eigen::Vector4f& value) { glUniform4fv(location, 1, value.data()); }

    static void set(GLint location, const Eigen::Matrix3f& value)
    {
        glUniformMatrix3fv(location, 1, GL_FALSE, value.data());
    }

    static void set(GLint location, const Eigen::Matrix4f& value)
    {
        glUniformMatrix4fv(location, 1, GL_FALSE, value.data());
    }

private:
    Gl::Program program_;
};

} // namespace VX
