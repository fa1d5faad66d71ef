#version 110
// Pulls out the bright parts of a picture: what lies below the level
// "contrast" goes black, what lies above it is raised by the gain
// "brightness". With 0.5 and 2.6 the upper half of each channel spreads over
// the whole range and the dark half stays black.
uniform sampler2D Texture0;
uniform float brightness;
uniform float contrast;

void main() {
    vec4 colour = texture2D(Texture0, gl_TexCoord[0].st);
    vec3 bright = clamp((colour.rgb - vec3(contrast)) * brightness, 0.0, 1.0);
    gl_FragColor = vec4(bright, colour.a);
}
