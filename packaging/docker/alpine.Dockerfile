# PHP with the template extension, on Alpine: the official image, its C++ library, and one file more.
#
#     docker build -f packaging/docker/alpine.Dockerfile -t php-template:alpine .
#     docker build -f packaging/docker/alpine.Dockerfile -t php-template:fpm-alpine --build-arg VARIANT=fpm-alpine .
ARG VARIANT=cli-alpine

FROM php:8.4-${VARIANT} AS build
RUN apk add --no-cache $PHPIZE_DEPS
COPY . /usr/src/template
RUN docker-php-ext-configure /usr/src/template --enable-template \
    && docker-php-ext-install -j"$(nproc)" /usr/src/template

FROM php:8.4-${VARIANT}
RUN apk add --no-cache libstdc++
COPY --from=build /usr/local/lib/php/extensions/no-debug-non-zts-20240924/template.so /usr/local/lib/php/extensions/no-debug-non-zts-20240924/
RUN docker-php-ext-enable template \
    && [ "$(php -r 'echo template("{a}", ["a" => "it works"], true);')" = "it works" ]
